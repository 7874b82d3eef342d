#include "tour/toursimulator.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>

#include <memory>

namespace NelvoDevkit {

namespace {

const QString Enterprise = QStringLiteral("1001");

//! Collects the values of `key` in `unit` and all its descendants.
void collect(const QJsonObject& unit, const QString& key, QStringList& found)
{
    found.append(unit.value(key).toString());
    const QJsonArray children = unit.value(QStringLiteral("children")).toArray();
    for (const QJsonValue child : children)
        collect(child.toObject(), key, found);
}

//! The unit with that name, `unit` or a descendant; empty if there is none.
QJsonObject findUnit(const QJsonObject& unit, const QString& name)
{
    if (unit.value(QStringLiteral("name")).toString() == name)
        return unit;
    const QJsonArray children = unit.value(QStringLiteral("children")).toArray();
    for (const QJsonValue child : children) {
        QJsonObject found = findUnit(child.toObject(), name);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

} // namespace

TourSimulator::TourSimulator(const UiDriver& ui, const QString& readyFile) : m_ui(ui)
{
    QFile file(readyFile);
    m_ui.require(file.open(QIODevice::ReadOnly), QStringLiteral("the ready file ") + readyFile);
    const QJsonObject addresses = QJsonDocument::fromJson(file.readAll()).object();
    const auto read = [&](const QString& name) {
        QString url = addresses.value(name).toString();
        m_ui.require(!url.isEmpty(), QStringLiteral("\"%1\" in %2").arg(name, readyFile));
        return url;
    };
    m_signInUrl = read(QStringLiteral("signIn"));
    m_editorUrl = read(QStringLiteral("editor"));
    m_controlUrl = read(QStringLiteral("control"));
}

QString TourSimulator::projectName(const QString& id)
{
    const QJsonArray all = projects();
    for (const QJsonValue project : all) {
        if (project[QStringLiteral("id")].toString() == id)
            return project[QStringLiteral("name")].toString();
    }
    return {};
}

QStringList TourSimulator::projectNames()
{
    QStringList names;
    const QJsonArray all = projects();
    for (const QJsonValue project : all)
        names.append(project[QStringLiteral("name")].toString());
    names.sort();
    return names;
}

QJsonObject TourSimulator::bindings(const QString& projectId)
{
    const QByteArray state = exchange("GET", m_controlUrl + QStringLiteral("/state"));
    return QJsonDocument::fromJson(state)
        .object()
        .value(QStringLiteral("bindings"))
        .toObject()
        .value(projectId)
        .toObject();
}

QStringList TourSimulator::unitNames()
{
    QStringList names;
    collect(editorData(QStringLiteral("/org/tree")).toObject(), QStringLiteral("name"), names);
    return names;
}

QStringList TourSimulator::modelNames(const QString& unit)
{
    const QJsonObject tree = editorData(QStringLiteral("/org/tree")).toObject();
    QStringList units;
    collect(unit.isEmpty() ? tree : findUnit(tree, unit), QStringLiteral("value"), units);
    QStringList names;
    const QJsonArray models = editorData(QStringLiteral("/bim/relation/")).toArray();
    for (const QJsonValue model : models) {
        if (units.contains(model[QStringLiteral("deptId")].toString()))
            names.append(model[QStringLiteral("ppName")].toString());
    }
    return names;
}

QStringList TourSimulator::drawingNames()
{
    QStringList names;
    const QJsonArray drawings = editorData(QStringLiteral("/bim/relation/dwg")).toArray();
    for (const QJsonValue drawing : drawings)
        names.append(drawing[QStringLiteral("dwgName")].toString());
    return names;
}

void TourSimulator::addFault(const QString& query)
{
    exchange("POST", m_controlUrl + QStringLiteral("/faults?") + query);
}

void TourSimulator::addProject(const QString& id, const QString& name, const QString& departmentId)
{
    const QJsonObject project{
        {QStringLiteral("id"), id}, {QStringLiteral("name"), name}, {QStringLiteral("deptId"), departmentId}};
    exchange("GET", m_editorUrl + QStringLiteral("/org/heartbeat"));
    exchange("POST", m_editorUrl + QStringLiteral("/scene/project"), QJsonDocument(project).toJson());
}

QJsonArray TourSimulator::projects()
{
    const QByteArray state = exchange("GET", m_controlUrl + QStringLiteral("/state"));
    return QJsonDocument::fromJson(state)
        .object()
        .value(QStringLiteral("projects"))
        .toObject()
        .value(Enterprise)
        .toArray();
}

QJsonValue TourSimulator::editorData(const QString& path)
{
    exchange("GET", m_editorUrl + QStringLiteral("/org/heartbeat"));
    return QJsonDocument::fromJson(exchange("GET", m_editorUrl + path))
        .object()
        .value(QStringLiteral("data"));
}

QByteArray TourSimulator::exchange(const QByteArray& method, const QString& url, const QByteArray& body)
{
    QNetworkRequest request{QUrl(url)};
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const std::unique_ptr<QNetworkReply> reply(m_network.sendCustomRequest(request, method, body));
    m_ui.await([&reply] { return reply->isFinished(); }, QStringLiteral("an answer from ") + url);
    m_ui.require(reply->error() == QNetworkReply::NoError, reply->errorString());
    return reply->readAll();
}

} // namespace NelvoDevkit
