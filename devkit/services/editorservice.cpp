#include "services/editorservice.h"

#include "services/editordata.h"
#include "services/randomtext.h"
#include "services/signinservice.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

namespace NelvoDevkit {

namespace {

constexpr char SessionCookie[] = "EDITORSESSION";
constexpr char HexDigits[] = "0123456789abcdef";
constexpr char DeleteBindingsPath[] = "/equipment/bind/deleteAll/";
constexpr char AddBindingsPath[] = "/equipment/bind/batchAdd/";

bool needsASession(const QByteArray& path)
{
    return path == "/org/tree" || path.startsWith("/scene/") || path.startsWith("/bim/") ||
           path.startsWith("/equipment/");
}

HttpReply success(const QJsonValue& data = QJsonObject())
{
    return jsonReply(QJsonObject{{QStringLiteral("code"), 0}, {QStringLiteral("data"), data}});
}

HttpReply failure(int status, const QString& message)
{
    HttpReply reply =
        jsonReply(QJsonObject{{QStringLiteral("code"), status}, {QStringLiteral("message"), message}});
    reply.status = status;
    return reply;
}

QString explanation(const QByteArray& infoCode)
{
    if (infoCode == "1001")
        return QStringLiteral("未登录或会话不存在");
    if (infoCode == "1007")
        return QStringLiteral("该帐号已在另一地点登录");
    return QStringLiteral("会话已被终止");
}

HttpReply refusal(const QByteArray& infoCode)
{
    HttpReply reply = jsonReply(QJsonObject{{QStringLiteral("infoCode"), QString::fromUtf8(infoCode)},
                                            {QStringLiteral("message"), explanation(infoCode)}});
    reply.status = 401;
    return reply;
}

QJsonObject bodyObject(const HttpRequest& request)
{
    return QJsonDocument::fromJson(request.body).object();
}

//! Whether all these members are strings, and the id is not empty.
bool hasTexts(const QJsonObject& object, std::initializer_list<QString> names)
{
    for (const QString& name : names) {
        if (!object.value(name).isString())
            return false;
    }
    return !object.value(QStringLiteral("id")).toString().isEmpty();
}

//! The part of the request's path after the prefix.
QString idBehind(const char* prefix, const HttpRequest& request)
{
    return QUrl::fromPercentEncoding(request.path().mid(static_cast<int>(qstrlen(prefix))));
}

} // namespace

EditorService::EditorService(const SignInService& signIn, EditorData& data) : m_signIn(signIn), m_data(data)
{}

Delivery EditorService::answer(const HttpRequest& request)
{
    static const std::vector<Route<EditorService>> routes = {
        {"GET", "/org/heartbeat", &EditorService::heartbeat},
        {"GET", "/org/tree", &EditorService::tree},
        {"GET", "/scene/project", &EditorService::listProjects},
        {"POST", "/scene/project", &EditorService::addProject},
        {"PUT", "/scene/project", &EditorService::renameProject},
        {"GET", "/bim/relation/", &EditorService::listModels},
        {"GET", "/bim/relation/dwg", &EditorService::listDrawings},
        {"POST", QByteArray(DeleteBindingsPath) + '*', &EditorService::deleteBindings},
        {"POST", QByteArray(AddBindingsPath) + '*', &EditorService::addBindings},
    };
    const std::lock_guard lock(m_mutex);
    if (needsASession(request.path())) {
        const Session* known = session(request);
        if (known == nullptr)
            return {refusal("1001")};
        if (!known->pushedOut.isEmpty())
            return {refusal(known->pushedOut)};
    }
    return {dispatch(*this, routes, request)};
}

void EditorService::forgetSession(const HttpRequest& request)
{
    const std::lock_guard lock(m_mutex);
    m_sessions.erase(cookie(request, SessionCookie));
}

void EditorService::forgetSessions()
{
    const std::lock_guard lock(m_mutex);
    m_sessions.clear();
}

void EditorService::pushOut(const QString& user, const QByteArray& code)
{
    const std::lock_guard lock(m_mutex);
    pushOutAll(user, code);
}

//! A client that was pushed out and has signed in again is accepted.
HttpReply EditorService::heartbeat(const HttpRequest& request)
{
    const std::optional<SignedInClient> client = m_signIn.signedInClient(request);
    Session* known = session(request);
    const bool isPushedOut = known != nullptr && !known->pushedOut.isEmpty();
    if (isPushedOut && (!client || client->session == known->signIn))
        return refusal(known->pushedOut);
    HttpReply reply = success();
    if (known == nullptr || isPushedOut)
        known = &startSession(reply);
    if (client)
        bind(*known, *client);
    return reply;
}

HttpReply EditorService::tree(const HttpRequest& request)
{
    HttpReply reply = success();
    reply.body = m_data.treeJson(session(request)->enterpriseId);
    return reply;
}

HttpReply EditorService::listProjects(const HttpRequest& request)
{
    return success(toJson(m_data.projects(session(request)->enterpriseId)));
}

HttpReply EditorService::addProject(const HttpRequest& request)
{
    const QString id = QStringLiteral("id");
    const QString name = QStringLiteral("name");
    const QString deptId = QStringLiteral("deptId");
    const QJsonObject order = bodyObject(request);
    if (!hasTexts(order, {id, name, deptId}))
        return failure(400, QStringLiteral("请求须为包含文本 id、name 与 deptId 的 JSON 对象"));
    SceneProject project;
    project.id = order.value(id).toString();
    project.name = order.value(name).toString();
    project.deptId = order.value(deptId).toString();
    if (m_data.addProject(session(request)->enterpriseId, project) == EditorData::Outcome::IdIsTaken)
        return failure(409, QStringLiteral("项目 %1 已存在").arg(project.id));
    return success();
}

HttpReply EditorService::renameProject(const HttpRequest& request)
{
    const QJsonObject order = bodyObject(request);
    if (!hasTexts(order, {QStringLiteral("id"), QStringLiteral("name")}))
        return failure(400, QStringLiteral("请求须为包含文本 id 与 name 的 JSON 对象"));
    const QString id = order.value(QStringLiteral("id")).toString();
    const QString name = order.value(QStringLiteral("name")).toString();
    if (m_data.renameProject(session(request)->enterpriseId, id, name) == EditorData::Outcome::UnknownId)
        return failure(404, QStringLiteral("项目 %1 不存在").arg(id));
    return success();
}

HttpReply EditorService::listModels(const HttpRequest& request)
{
    return success(modelRows(m_data.models(session(request)->enterpriseId).models));
}

HttpReply EditorService::listDrawings(const HttpRequest& request)
{
    return success(drawingRows(m_data.models(session(request)->enterpriseId).drawings));
}

HttpReply EditorService::deleteBindings(const HttpRequest& request)
{
    if (!request.body.isEmpty())
        return failure(400, QStringLiteral("请求体须为空"));
    m_data.deleteBindings(idBehind(DeleteBindingsPath, request));
    return success();
}

HttpReply EditorService::addBindings(const HttpRequest& request)
{
    const QJsonDocument document = QJsonDocument::fromJson(request.body);
    if (!document.isArray())
        return failure(400, QStringLiteral("请求须为 JSON 数组"));
    m_data.addBindings(idBehind(AddBindingsPath, request), document.array().size());
    return success();
}

EditorService::Session* EditorService::session(const HttpRequest& request)
{
    const auto found = m_sessions.find(cookie(request, SessionCookie));
    return found == m_sessions.end() ? nullptr : &found->second;
}

EditorService::Session& EditorService::startSession(HttpReply& reply)
{
    const QByteArray id = randomText(32, HexDigits);
    setCookie(reply, QByteArray(SessionCookie) + '=' + id + "; Path=/; HttpOnly");
    setCookie(reply, "route=" + randomText(16, HexDigits) + "; Path=/");
    Session& started = m_sessions[id];
    started.enterpriseId = m_data.defaultEnterprise();
    return started;
}

void EditorService::bind(Session& session, const SignedInClient& client)
{
    if (session.signIn != client.session) {
        session.user.clear(); // so that it is not pushed out itself
        pushOutAll(client.user, "1007");
    }
    session.signIn = client.session;
    session.user = client.user;
    session.enterpriseId = client.enterpriseId.value_or(m_data.defaultEnterprise());
}

void EditorService::pushOutAll(const QString& user, const QByteArray& code)
{
    for (auto& entry : m_sessions) {
        if (entry.second.user == user)
            entry.second.pushedOut = code;
    }
}

} // namespace NelvoDevkit
