#include "project/projectinfomgr.h"

#include "project/checkedread.h"
#include "web/cookiesjar.h"
#include "web/jsonfile.h"
#include "web/webclient.h"

#include <NelvoSDK/IMessageMgr.h>
#include <NelvoSDK/INelvoSDKPlugin.h>
#include <NelvoSDK/RecordKeys.h>

#include <QCoreApplication>
#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QUrl>

#include <algorithm>
#include <future>

namespace NelvoPlugin {

namespace RecordKeys = NelvoSDK::RecordKeys;

namespace {

constexpr int HeartbeatMilliseconds = 10000;
const auto ScenePath = QStringLiteral("/scene/project");

bool acceptAnyBody(const QByteArray& /*body*/)
{
    return true;
}

std::wstring wideText(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key)).toString().toStdWString();
}

//! Six significant digits: the host receives no more.
std::wstring wideNumber(const QJsonObject& object, const char* key)
{
    return QString::number(object.value(QLatin1String(key)).toDouble(), 'g', 6).toStdWString();
}

//! Leaves null in its place, so that the object's memory is free when its last copy goes.
QJsonObject takeObject(QJsonArray& array, int index)
{
    QJsonObject object = array.at(index).toObject();
    array.replace(index, {});
    return object;
}

std::wstring valueOrEmpty(const std::map<std::wstring, std::wstring>& map, const std::wstring& key)
{
    const auto found = map.find(key);
    return found == map.end() ? std::wstring() : found->second;
}

QByteArray jsonText(const QJsonObject& object)
{
    return QJsonDocument(object).toJson();
}

QJsonObject identity(const NelvoSDK::ProjectNode& project)
{
    return {{QStringLiteral("id"), QString::fromStdWString(project.id)},
            {QStringLiteral("name"), QString::fromStdWString(project.name)}};
}

bool hasLesserId(const NelvoSDK::ProjectNode& left, const NelvoSDK::ProjectNode& right)
{
    return left.id < right.id;
}

//! Whether a failed reply means that the account has signed in elsewhere.
bool saysPushedOut(const QByteArray& body)
{
    const QString code = parseJson(body, NELVO_HERE).object().value(QStringLiteral("infoCode")).toString();
    return code == QStringLiteral("1007") || code == QStringLiteral("1002");
}

} // namespace

CProjectInfoMgr::CProjectInfoMgr() = default;

void CProjectInfoMgr::ReflushProjOrgInfo(const NelvoSDK::LoginSession& newSession)
{
    session = newSession;

    // The host reads these; the model lists read "sdkAddr". A property that is not set keeps its earlier
    // value.
    QCoreApplication* application = QCoreApplication::instance();
    application->setProperty("sdkAddr", QString::fromStdWString(session.sdkAddr));
    if (!session.iotToken.empty())
        application->setProperty("iotToken", QString::fromStdWString(session.iotToken));
    const auto epId = session.extra.find(RecordKeys::EpId);
    if (epId != session.extra.end())
        application->setProperty("epId", QString::fromStdWString(epId->second));

    restoreSessionCookies();
    const QPointer<CProjectInfoMgr> self(this);
    QJsonObject reply;
    const bool read =
        httpGetJson(sharedNetworkManager(), baseUrl(), QStringLiteral("/org/tree"), {}, reply, this);
    if (!self)
        return;
    if (read) {
        QJsonObject root = reply.value(QStringLiteral("data")).toObject();
        reply = {};
        WalkOrgTree(std::move(root), orgRoot);
    } else {
        qDebug("CProjectInfoMgr::ReflushProjOrgInfo /org/tree error!");
    }

    // Each call starts one more timer, and none is ever stopped. This is intentional.
    startTimer(HeartbeatMilliseconds, Qt::CoarseTimer);
}

void CProjectInfoMgr::Shutdown() {}

NelvoSDK::INelvoSDKPlugin* CProjectInfoMgr::GetPlugin()
{
    return plugin;
}

void CProjectInfoMgr::SetPlugin(NelvoSDK::INelvoSDKPlugin* newPlugin)
{
    plugin = newPlugin;
}

bool CProjectInfoMgr::GetServerProjectTree(std::list<NelvoSDK::ProjectNode>& projects)
{
    const QPointer<CProjectInfoMgr> self(this);
    QJsonObject reply;
    if (!httpGetJson(sharedNetworkManager(), baseUrl(), ScenePath, {}, reply, this)) {
        if (self)
            qDebug("CProjectInfoMgr::GetServerProjectTree getprojList /scene/project falied!");
        return false;
    }
    QJsonArray elements = reply.value(QStringLiteral("data")).toArray();
    reply = {};
    // A helper thread converts half of the list.
    const int middle = elements.size() / 2;
    std::future<std::list<NelvoSDK::ProjectNode>> firstHalf =
        std::async([&] { return SortedNodes(elements, 0, middle); });
    std::list<NelvoSDK::ProjectNode> listed = SortedNodes(elements, middle, elements.size());
    listed.merge(firstHalf.get(), hasLesserId);
    listed.unique([](const auto& left, const auto& right) { return left.id == right.id; });
    // A helper thread stores the names, while this thread frees the list.
    std::future<void> names = std::async([&] {
        serverProjects.clear();
        for (const NelvoSDK::ProjectNode& project : listed)
            serverProjects.insert(serverProjects.constEnd(), project.id, project.name);
    });
    elements = {};
    names.get();
    projects.splice(projects.end(), listed);
    return true;
}

bool CProjectInfoMgr::GetOrgTree(NelvoSDK::OrgTreeNode& root)
{
    CopyOrgTree(orgRoot, root);
    return true;
}

void CProjectInfoMgr::RemoveForeignProjects(std::list<NelvoSDK::ProjectRef>& projects)
{
    projects.remove_if([this](const NelvoSDK::ProjectRef& project) { return IsForeignProject(project); });
}

//! Sets the enterprise, not the department.
void CProjectInfoMgr::GetProjectInfo(const std::wstring id, NelvoSDK::ProjectRef& project)
{
    const auto onServer = serverProjects.constFind(id);
    const auto local = localProjects.constFind(id);
    if (onServer != serverProjects.constEnd()) {
        project.id = onServer.key();
        project.name = onServer.value();
    } else if (local != localProjects.constEnd()) {
        project.id = local->id;
        project.name = local->name;
    } else {
        return;
    }
    for (const std::wstring key : {RecordKeys::EpId, RecordKeys::EpName})
        project.attrs[key] = checkedRead(session.extra, key);
}

void CProjectInfoMgr::AddLocalProject(const NelvoSDK::ProjectRef& project)
{
    if (project.id.empty() || localProjects.contains(project.id) || serverProjects.contains(project.id))
        return;
    localProjects.insert(project.id, ToLocalProject(project));
}

void CProjectInfoMgr::RemoveLocalProject(const std::wstring id)
{
    localProjects.remove(id);
}

void CProjectInfoMgr::OnUploadProject(const NelvoSDK::ProjectNode& project, void* /*reserved*/, bool upload)
{
    if (!upload)
        return;
    const QPointer<CProjectInfoMgr> self(this);
    // Removed before the request and not restored after a failure. Both are intentional.
    if (localProjects.remove(project.id) > 0) {
        if (!addProject(project) && self)
            qDebug("CProjectInfoMgr::OnUploadProject add project /scene/project falid");
        return;
    }
    const auto onServer = serverProjects.constFind(project.id);
    if (onServer == serverProjects.constEnd() || onServer.value() == project.name)
        return;
    if (!renameProject(project) && self)
        qDebug("CProjectInfoMgr::OnUploadProject update project /scene/project falid");
}

void CProjectInfoMgr::OnUploadSdkProperty(const QString& sceneProjId,
                                          const QMap<QString, QString>& deviceSerials)
{
    const QPointer<CProjectInfoMgr> self(this);
    if (!httpPost(sharedNetworkManager(), baseUrl(),
                  QStringLiteral("/equipment/bind/deleteAll/") + sceneProjId, {}, {}, acceptAnyBody, this)) {
        if (self)
            qDebug("CProjectInfoMgr::OnUploadSdkProperty /equipment/bind/deleteAll/ falid !");
        return;
    }
    QJsonArray bindings;
    for (auto device = deviceSerials.begin(); device != deviceSerials.end(); ++device) {
        const QJsonObject element;
        BuildEquipmentBinding(sceneProjId, device.key(), device.value(), element);
        bindings.append(element);
    }
    // The path contains "batchAdd" and the log text "batchUpdate". This is intentional.
    if (!httpPost(sharedNetworkManager(), baseUrl(),
                  QStringLiteral("/equipment/bind/batchAdd/") + sceneProjId, QJsonDocument(bindings).toJson(),
                  {}, acceptAnyBody, this) &&
        self) {
        qDebug("CProjectInfoMgr::OnUploadSdkProperty /equipment/bind/batchUpdate/ falid !");
    }
}

void CProjectInfoMgr::ReservedFirst() {}

void CProjectInfoMgr::ReservedSecond() {}

//! Does not use the blocking calls, because they do not return the body of a failed reply. Ignores the body
//! of a successful reply: the codes matter only in a failed one.
void CProjectInfoMgr::timerEvent(QTimerEvent* /*event*/)
{
    QNetworkRequest request = buildRequest();
    request.setUrl(QUrl(baseUrl() + QStringLiteral("/org/heartbeat"), QUrl::TolerantMode));
    QNetworkReply* reply = sharedNetworkManager()->get(request);
    if (!waitForReply(reply, this) || reply->error() == QNetworkReply::NoError)
        return;
    qWarning().noquote() << reply->errorString();
    if (!saysPushedOut(reply->readAll()))
        return;
    if (NelvoSDK::IMessageMgr* messages = plugin->GetMessageMgr())
        messages->NotifyFirst(QStringLiteral("您的帐号在另一地点登录，您被迫下线"));
}

NelvoSDK::ProjectNode CProjectInfoMgr::ToProjectNode(const QJsonObject& object)
{
    NelvoSDK::ProjectNode node;
    node.name = wideText(object, "name");
    node.id = wideText(object, "id");
    node.x = wideNumber(object, "x");
    node.y = wideNumber(object, "y");
    node.code = wideText(object, "code");
    node.basemap = wideText(object, "basemap");
    node.proj4 = wideText(object, "proj4");
    node.attrs.emplace(RecordKeys::DeptId, wideText(object, "deptId"));
    node.attrs.emplace(RecordKeys::DeptName, wideText(object, "deptName"));
    return node;
}

//! Begins at the end: of several projects with one id, the last one comes first.
std::list<NelvoSDK::ProjectNode> CProjectInfoMgr::SortedNodes(const QJsonArray& elements, int begin, int end)
{
    std::list<NelvoSDK::ProjectNode> nodes;
    for (int index = end - 1; index >= begin; --index)
        nodes.push_back(ToProjectNode(elements.at(index).toObject()));
    nodes.sort(hasLesserId);
    return nodes;
}

CProjectInfoMgr::LocalProject CProjectInfoMgr::ToLocalProject(const NelvoSDK::ProjectRef& project)
{
    return {project.id, project.name, valueOrEmpty(project.attrs, RecordKeys::DeptId),
            valueOrEmpty(project.attrs, RecordKeys::DeptName)};
}

//! Appends to existing children. Only the root has any, from an earlier call, so its first level is doubled.
//! This is intentional. Frees the object while it makes the nodes, because a large tree takes much memory in
//! either form.
void CProjectInfoMgr::WalkOrgTree(QJsonObject object, OrgUnit& node)
{
    node.value = object.value(QLatin1String("value")).toString();
    node.name = object.value(QLatin1String("name")).toString();
    node.type = object.value(QLatin1String("type")).toInt();
    node.parId = object.value(QLatin1String("parId")).toString();
    QJsonArray children = object.value(QLatin1String("children")).toArray();
    object = {};
    for (int index = 0; index < children.size(); ++index) {
        node.children.emplace_back();
        WalkOrgTree(takeObject(children, index), node.children.back());
    }
}

void CProjectInfoMgr::CopyOrgTree(const OrgUnit& node, NelvoSDK::OrgTreeNode& out)
{
    constexpr qint32 selectableType = 2;
    out.id = node.value.toStdWString();
    out.name = node.name.toStdWString();
    out.canSelect = node.type == selectableType;
    for (const OrgUnit& child : node.children) {
        out.children.emplace_back();
        CopyOrgTree(child, out.children.back());
    }
}

//! Creates a binding but leaves `element` empty: each assignment changes a copy. This is intentional: the
//! services expect empty objects and use only their number.
void CProjectInfoMgr::BuildEquipmentBinding(const QString& sceneProjId, const QString& compGuid,
                                            const QString& serialNumber, const QJsonObject& element)
{
    const QJsonObject description{{QStringLiteral("name"), QString()},
                                  {QStringLiteral("serialNumber"), serialNumber},
                                  {QStringLiteral("type"), QString()},
                                  {QStringLiteral("vendor"), QString()}};
    const QJsonObject reference{{QStringLiteral("compGUID"), compGuid},
                                {QStringLiteral("sceneProjId"), sceneProjId}};
    element[QStringLiteral("equInfo")] = QString::fromUtf8(jsonText(description));
    element[QStringLiteral("ref")] = QString::fromUtf8(jsonText(reference));
}

QString CProjectInfoMgr::baseUrl() const
{
    return QString::fromStdWString(session.sdkAddr);
}

//! Replaces the whole jar. Splits the text at every comma, also inside an expiry date, and drops parts that
//! are no cookies. This is intentional: the text is joined with plain commas.
void CProjectInfoMgr::restoreSessionCookies() const
{
    QList<QNetworkCookie> cookies;
    const QStringList parts = QString::fromStdWString(session.cookies)
                                  .split(QLatin1Char(','), Qt::KeepEmptyParts, Qt::CaseSensitive);
    for (const QString& part : parts)
        cookies.append(QNetworkCookie::parseCookies(part.toUtf8()));
    sharedCookieJar()->setAllCookies(cookies);
}

bool CProjectInfoMgr::IsForeignProject(const NelvoSDK::ProjectRef& project) const
{
    const std::wstring key = RecordKeys::EpId;
    const auto epId = project.attrs.find(key);
    return epId == project.attrs.end() || epId->second != checkedRead(session.extra, key);
}

bool CProjectInfoMgr::addProject(const NelvoSDK::ProjectNode& project) const
{
    QJsonObject body = identity(project);
    body.insert(QStringLiteral("deptId"),
                QString::fromStdWString(checkedRead(project.attrs, std::wstring(RecordKeys::DeptId))));
    return httpPost(sharedNetworkManager(), baseUrl(), ScenePath, jsonText(body), {}, acceptAnyBody, this);
}

bool CProjectInfoMgr::renameProject(const NelvoSDK::ProjectNode& project) const
{
    return httpPut(sharedNetworkManager(), baseUrl(), ScenePath, jsonText(identity(project)), {},
                   acceptAnyBody, this);
}

} // namespace NelvoPlugin
