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

// Both failure texts name another class and another path than the ones at work; they are meant so.

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

//! The next request goes through the event loop, so that a thread that is to end doesn't take it up.
void CBimProjWorker::serve()
{
    const Source source = m_requests.head(); // a copy, since the queue grows during the fetch
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
    // To write out a large answer takes as long as all that is done with it, so it is done meanwhile.
    std::future<QJsonArray> records = std::async([&] { return recordsOf(answer, source.record); });
    if (QLoggingCategory::defaultCategory()->isDebugEnabled())
        qDebug() << answer;
    Q_EMIT sigSyncBimProjList(records.get(), true);
}

} // namespace NelvoPlugin
