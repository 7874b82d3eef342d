#include "bim/bimprojworker.h"

#include "bim/bimrecord.h"
#include "web/webclient.h"

#include <QCoreApplication>
#include <QDebug>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QVariant>

#include <future>

namespace NelvoPlugin {

namespace {

QJsonArray recordsOf(const QJsonObject& answer, QJsonObject (*record)(const QJsonObject& row))
{
    QJsonArray records;
    const QJsonArray rows = answer.value(QLatin1String("data")).toArray();
    for (const QJsonValue& row : rows)
        records.append(record(row.toObject()));
    return records;
}

} // namespace

// Both log texts name the wrong class and path. This is intentional: the texts are fixed.

void CBimProjWorker::getBimProjList()
{
    request({QStringLiteral("/bim/relation/"), &bimRecord,
             "CProjectInfoMgr::getBimProjList getprojList /scene/project falied!"});
}

void CBimProjWorker::getDWGBimProjList()
{
    request({QStringLiteral("/bim/relation/dwg"), &dwgRecord,
             "CProjectInfoMgr::getDWGBimProjList getprojList /scene/project falied!"});
}

void CBimProjWorker::request(const Source& source)
{
    m_requests.enqueue(source);
    if (m_requests.size() == 1)
        serve();
}

//! The event loop starts the next request, so that a thread that should end does not begin it.
void CBimProjWorker::serve()
{
    const Source source = m_requests.head(); // a copy, because the queue grows during the fetch
    fetch(source);
    m_requests.dequeue();
    if (!m_requests.isEmpty())
        QMetaObject::invokeMethod(this, &CBimProjWorker::serve, Qt::QueuedConnection);
}

void CBimProjWorker::fetch(const Source& source)
{
    const QString address = QCoreApplication::instance()->property("sdkAddr").toString();
    QJsonObject answer;
    if (!httpGetJson(sharedNetworkManager(), address, source.path, {}, answer)) {
        qDebug("%s", source.failure);
        Q_EMIT sigSyncBimProjList({}, false);
        return;
    }
    // Logging a large reply takes as long as converting it, so both run in parallel.
    std::future<QJsonArray> records = std::async([&] { return recordsOf(answer, source.record); });
    if (QLoggingCategory::defaultCategory()->isDebugEnabled())
        qDebug() << answer;
    Q_EMIT sigSyncBimProjList(records.get(), true);
}

} // namespace NelvoPlugin
