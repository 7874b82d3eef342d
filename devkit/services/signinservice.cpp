#include "services/signinservice.h"

#include "services/randomtext.h"
#include "services/signinpages.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

namespace NelvoDevkit {

namespace {

constexpr char SessionCookie[] = "JSESSIONID";
constexpr char Expired[] = "; Max-Age=0; Expires=Thu, 01-Jan-1970 00:00:10 GMT; Path=/";

QByteArray randomId(int length)
{
    return randomText(length, "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
}

//! A ticket such as "LT-12-…-cas01.example.org".
QByteArray ticket(const QByteArray& kind, int number, int randomLength)
{
    return kind + '-' + QByteArray::number(number) + '-' + randomId(randomLength) + "-cas01.example.org";
}

//! The fields of a posted form; none if the request has another content type.
QUrlQuery formFields(const HttpRequest& request)
{
    if (!request.header("Content-Type").toLower().startsWith("application/x-www-form-urlencoded"))
        return {};
    return QUrlQuery(QString::fromUtf8(request.body).replace(QLatin1Char('+'), QLatin1String("%20")));
}

QString field(const QUrlQuery& fields, const QString& name)
{
    return fields.queryItemValue(name, QUrl::FullyDecoded);
}

QString md5(const QString& text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Md5).toHex());
}

QJsonObject result(int code, const QString& message)
{
    return {{QStringLiteral("code"), code}, {QStringLiteral("message"), message}};
}

QJsonObject server(const QString& name, const QString& url)
{
    return {{QStringLiteral("serverName"), name}, {QStringLiteral("serverURL"), url}};
}

bool belongsTo(const Account& account, const QString& enterpriseId)
{
    return std::any_of(account.enterprises.begin(), account.enterprises.end(),
                       [&enterpriseId](const Enterprise& enterprise) {
                           return QString::number(enterprise.id) == enterpriseId;
                       });
}

} // namespace

SignInService::SignInService(const Seed& seed) : m_seed(seed) {}

void SignInService::setAddresses(const QString& ownUrl, const QString& editorUrl)
{
    const std::lock_guard lock(m_mutex);
    m_ownUrl = ownUrl;
    m_editorUrl = editorUrl;
}

Delivery SignInService::answer(const HttpRequest& request)
{
    static const std::vector<Route<SignInService>> routes = {
        {"GET", "/login", &SignInService::showForm},
        {"POST", "/login", &SignInService::takeForm},
        {"GET", "/login/success", &SignInService::showSuccess},
        {"GET", "/rs/casLogin/listCompany", &SignInService::listCompanies},
        {"POST", "/rs/casLogin/casLogin", &SignInService::bindToEnterprise},
        {"GET", "/rs/casLogin/serverUrl", &SignInService::listServers},
        {"GET", "/rs/cim/nelvo/client_token", &SignInService::clientToken},
        {"GET", "/rs/casLogin/logout", &SignInService::logOut},
    };
    const std::lock_guard lock(m_mutex);
    if (request.path().startsWith("/rs/") && !isSignedIn(request))
        return {sendToForm(request)};
    return {dispatch(*this, routes, request)};
}

void SignInService::forgetSession(const HttpRequest& request)
{
    const std::lock_guard lock(m_mutex);
    m_sessions.erase(cookie(request, SessionCookie));
}

void SignInService::forgetSessions()
{
    const std::lock_guard lock(m_mutex);
    m_sessions.clear();
    m_loginTickets.clear();
}

QStringList SignInService::users() const
{
    QStringList users;
    for (const Account& account : m_seed.accounts)
        users.append(account.user);
    return users;
}

std::optional<SignedInClient> SignInService::signedInClient(const HttpRequest& request) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_sessions.find(cookie(request, SessionCookie));
    if (found == m_sessions.end() || found->second.account == nullptr)
        return std::nullopt;
    return SignedInClient{found->first, found->second.account->user, found->second.enterpriseId};
}

HttpReply SignInService::showForm(const HttpRequest& request)
{
    HttpReply reply = form();
    if (session(request) == nullptr)
        startSession(reply);
    return reply;
}

HttpReply SignInService::takeForm(const HttpRequest& request)
{
    const QUrlQuery fields = formFields(request);
    // The first attempt uses up a ticket, even if it fails.
    if (m_loginTickets.erase(field(fields, QStringLiteral("lt")).toUtf8()) == 0)
        return form(QStringLiteral("登录票据无效或已过期，请重新登录。"));
    const Account* account = authenticate(fields);
    if (account == nullptr)
        return form(QStringLiteral("用户名或密码错误，请重新输入。"));
    return signIn(request, *account);
}

HttpReply SignInService::showSuccess(const HttpRequest& request)
{
    if (!isSignedIn(request))
        return sendToForm(request);
    HttpReply reply = htmlReply(successPage(session(request)->account->user));
    setCookie(reply, "LOCALE=zh_CN; Path=/");
    return reply;
}

HttpReply SignInService::listCompanies(const HttpRequest& request)
{
    QJsonArray companies;
    for (const Enterprise& enterprise : session(request)->account->enterprises) {
        companies.append(QJsonObject{{QStringLiteral("enterpriseId"), enterprise.id},
                                     {QStringLiteral("enterpriseName"), enterprise.name}});
    }
    return jsonReply(QJsonDocument(companies));
}

HttpReply SignInService::bindToEnterprise(const HttpRequest& request)
{
    const QJsonDocument document = QJsonDocument::fromJson(request.body);
    const QJsonObject order = document.object();
    const QJsonValue enterpriseId = order.value(QStringLiteral("epid"));
    if (!enterpriseId.isString() || !order.value(QStringLiteral("version")).isString())
        return jsonReply(result(400, QStringLiteral("请求须为包含文本 epid 与 version 的 JSON 对象")));
    Session& bound = *session(request);
    if (!belongsTo(*bound.account, enterpriseId.toString()))
        return jsonReply(result(403, QStringLiteral("该用户不属于此企业")));
    bound.enterpriseId = enterpriseId.toString().toLongLong();
    bound.clientToken = "iot-" + enterpriseId.toString().toUtf8() + '-' + randomId(40);
    return jsonReply(result(0, QStringLiteral("ok")));
}

HttpReply SignInService::listServers(const HttpRequest& /*request*/)
{
    return jsonReply(QJsonDocument(QJsonArray{
        server(QStringLiteral("portal"), m_ownUrl + QStringLiteral("/portal")),
        server(QStringLiteral("varlo-editor"), m_editorUrl),
        server(QStringLiteral("file-store"), m_ownUrl + QStringLiteral("/files")),
        server(QStringLiteral("iot_new"), m_ownUrl + QStringLiteral("/iot")),
        server(QStringLiteral("message-center"), m_ownUrl + QStringLiteral("/messages")),
    }));
}

HttpReply SignInService::clientToken(const HttpRequest& request)
{
    const QByteArray token = session(request)->clientToken;
    if (token.isEmpty())
        return textReply(403, "The session is not bound to an enterprise\n");
    return textReply(200, token);
}

HttpReply SignInService::logOut(const HttpRequest& request)
{
    m_sessions.erase(cookie(request, SessionCookie));
    HttpReply reply = jsonReply(result(0, QStringLiteral("ok")));
    setCookie(reply, QByteArray(SessionCookie) + '=' + Expired);
    setCookie(reply, QByteArray("CASTGC=") + Expired);
    return reply;
}

HttpReply SignInService::form(const QString& message)
{
    ++m_ticketCount;
    const FormValues values{ticket("LT", m_ticketCount, 30), 'e' + QByteArray::number(m_ticketCount) + "s1"};
    m_loginTickets.insert(values.ticket);
    return htmlReply(formPage(values, message));
}

//! The client gets a new session, so that no session id from before the sign-in is valid.
HttpReply SignInService::signIn(const HttpRequest& request, const Account& account)
{
    m_sessions.erase(cookie(request, SessionCookie));
    HttpReply reply = redirectReply(m_ownUrl.toLatin1() + "/login/success");
    startSession(reply).account = &account;
    setCookie(reply, "CASTGC=" + ticket("TGT", m_ticketCount, 50) + "; Path=/; HttpOnly");
    return reply;
}

HttpReply SignInService::sendToForm(const HttpRequest& request) const
{
    const QByteArray url = m_ownUrl.toLatin1();
    return redirectReply(
        url + "/login?service=" + QUrl::toPercentEncoding(QString::fromLatin1(url + request.path())));
}

SignInService::Session* SignInService::session(const HttpRequest& request)
{
    const auto found = m_sessions.find(cookie(request, SessionCookie));
    return found == m_sessions.end() ? nullptr : &found->second;
}

bool SignInService::isSignedIn(const HttpRequest& request)
{
    const Session* known = session(request);
    return known != nullptr && known->account != nullptr;
}

SignInService::Session& SignInService::startSession(HttpReply& reply)
{
    const QByteArray id = randomText(32, "0123456789ABCDEF");
    setCookie(reply, QByteArray(SessionCookie) + '=' + id + "; Path=/; HttpOnly");
    return m_sessions[id];
}

const Account* SignInService::authenticate(const QUrlQuery& fields) const
{
    const Account* account = m_seed.find(field(fields, QStringLiteral("username")));
    const bool right =
        account != nullptr && field(fields, QStringLiteral("password")) == md5(account->password);
    return right ? account : nullptr;
}

} // namespace NelvoDevkit
