#include "services/editorservice.h"

#include "services/randomtext.h"

#include <QJsonObject>

namespace NelvoDevkit {

namespace {

constexpr char sessionCookie[] = "EDITORSESSION";
constexpr char hexDigits[] = "0123456789abcdef";

} // namespace

HttpReply EditorService::answer(const HttpRequest& request)
{
    static const std::vector<Route<EditorService>> routes = {
        {"GET", "/org/heartbeat", &EditorService::heartbeat},
    };
    const std::lock_guard lock(m_mutex);
    return dispatch(*this, routes, request);
}

void EditorService::forgetSession(const HttpRequest& request)
{
    const std::lock_guard lock(m_mutex);
    m_sessions.erase(cookie(request, sessionCookie));
}

void EditorService::forgetSessions()
{
    const std::lock_guard lock(m_mutex);
    m_sessions.clear();
}

HttpReply EditorService::heartbeat(const HttpRequest& request)
{
    HttpReply reply =
        jsonReply(QJsonObject{{QStringLiteral("code"), 0}, {QStringLiteral("data"), QJsonObject()}});
    if (m_sessions.count(cookie(request, sessionCookie)) == 0) {
        const QByteArray id = randomText(32, hexDigits);
        m_sessions.insert(id);
        setCookie(reply, QByteArray(sessionCookie) + '=' + id + "; Path=/; HttpOnly");
        setCookie(reply, "route=" + randomText(16, hexDigits) + "; Path=/");
    }
    return reply;
}

} // namespace NelvoDevkit
