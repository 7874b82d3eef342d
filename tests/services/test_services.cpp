#include "clients.h"

#include "tests/support/row.h"
#include "tests/support/startedservices.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using NelvoDevkit::LoggedRequest;
using NelvoDevkit::Services;
using NelvoDevkit::ServicesOptions;
using TestSupport::json;
using TestSupport::row;
using TestSupport::StartedServices;

namespace {

const QStringList GuardedPaths = {"/rs/casLogin/listCompany", "/rs/casLogin/casLogin",
                                  "/rs/casLogin/serverUrl", "/rs/cim/nelvo/client_token",
                                  "/rs/casLogin/logout"};

QJsonArray array(const Answer& answer)
{
    return QJsonDocument::fromJson(answer.body).array();
}

int code(const Answer& answer)
{
    return QJsonDocument::fromJson(answer.body).object().value("code").toInt(-1);
}

//! True if the page is well-formed XML after the removal of its HTML entities, which XML does not define.
bool isWellFormed(const QByteArray& page)
{
    QXmlStreamReader reader(QString::fromUtf8(page).remove(QRegularExpression("&[0-9a-zA-Z]+;")));
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

QByteArray binding(const QString& enterpriseId)
{
    return QJsonDocument(QJsonObject{{"epid", enterpriseId}, {"version", "1.0.0"}}).toJson();
}

} // namespace

class TestServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void formPageCanBeScraped();
    void formPageHasAFreshTicketEachTime();
    void formPageStartsASessionOnlyForWhoHasNone();
    void signInListsTheCompanies_data();
    void signInListsTheCompanies();
    void signInSetsCookiesAlongTheRedirect();
    void signInIsRejected_data();
    void signInIsRejected();
    void ticketIsUsedUpByAFailure();
    void ticketIsUsedUpByASuccess();
    void successPageNeedsASession();
    void guardedPathSendsToTheForm_data();
    void guardedPathSendsToTheForm();
    void tokenNeedsAnEnterprise();
    void bindingOfAForeignEnterpriseFails();
    void bindingOfSomethingElseThanJsonFails();
    void serverListNamesTheServices();
    void logoutEndsTheSession();
    void forgetSessionsForgetsSessionsAndTickets();
    void unknownPathIsNotFound();
    void wrongMethodIsNotAllowed();

    void heartbeatSetsCookiesOnce();
    void heartbeatSetsCookiesAgainOnceForgotten();

    void logKeepsHeadersAsReceived();
    void logKeepsTheOrderOfBothServices();
    void logReadsAChunkedBody();
    void loggedRequestFindsHeadersInAnyCase();

    void cannedReplyReplacesTheAnswer();
    void cannedReplyWithoutBody();

    void connectionServesSeveralRequests();
    void connectionClosesWhenAsked();
    void connectionRefusesWhatIsNotHttp();

    void seedIsChecked_data();
    void seedIsChecked();
    void seedThatIsMissing();
    void seedOfOnesOwn();

    void startFailsOnATakenPort();
    void startWorksAgainAfterStop();
    void stopEndsIdleConnections();

private:
    QString login() const { return m_services->signInUrl() + "/login"; }
    QString signIn(const QString& path) const { return m_services->signInUrl() + path; }
    QString heartbeat() const { return m_services->editorUrl() + "/org/heartbeat"; }

    std::unique_ptr<StartedServices> m_services;
};

void TestServices::init()
{
    m_services = std::make_unique<StartedServices>();
}

void TestServices::cleanup()
{
    m_services.reset();
}

void TestServices::formPageCanBeScraped()
{
    Client client;
    const Answer answer = client.get(login());
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.contentType, QByteArray("text/html;charset=UTF-8"));
    QVERIFY(isWellFormed(answer.body));
    QVERIFY(QRegularExpression("^LT-\\d+-[0-9A-Za-z]{30}-cas01\\.example\\.org$")
                .match(inputValue(answer.body, "lt"))
                .hasMatch());
    QCOMPARE(inputValue(answer.body, "execution"), QString("e1s1"));
    QCOMPARE(inputValue(answer.body, "_eventId"), QString("submit"));
    QVERIFY(!answer.body.contains("{{"));
    QVERIFY(!answer.body.contains("class=\"errors\""));
}

void TestServices::formPageHasAFreshTicketEachTime()
{
    Client client;
    const QByteArray first = client.get(login()).body;
    const QByteArray second = client.get(login()).body;
    QVERIFY(inputValue(first, "lt") != inputValue(second, "lt"));
    QCOMPARE(inputValue(second, "execution"), QString("e2s1"));
}

void TestServices::formPageStartsASessionOnlyForWhoHasNone()
{
    Client client;
    client.get(login());
    const QByteArray session = client.cookie(login(), "JSESSIONID");
    QCOMPARE(session.size(), 32);
    client.get(login());
    QCOMPARE(client.cookie(login(), "JSESSIONID"), session);
}

void TestServices::signInListsTheCompanies_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<int>("companies");
    QTest::addColumn<QJsonObject>("first");

    row("one", "zhangwei", "123456", 1,
        QJsonObject{{"enterpriseId", 1001}, {"enterpriseName", "远景建筑设计研究院"}});
    row("many", "lina", "lina2024", 12,
        QJsonObject{{"enterpriseId", 1001}, {"enterpriseName", "远景建筑设计研究院"}});
    row("none", "wangfang", "wangfang", 0, QJsonObject());
    row("password beyond ASCII", "müller", "Größe-9é", 1,
        QJsonObject{{"enterpriseId", 1002}, {"enterpriseName", "东方轨道交通有限公司"}});
    row("Chinese user", "陈晓明", "xiaoming", 2,
        QJsonObject{{"enterpriseId", 1003}, {"enterpriseName", "江南水利工程局"}});
}

void TestServices::signInListsTheCompanies()
{
    QFETCH(const QString, user);
    QFETCH(const QString, password);
    Client client;
    const Answer page = client.signIn(m_services->signInUrl(), user, password);
    QCOMPARE(page.status, 200);
    QCOMPARE(page.url.path(), QString("/login/success"));
    QVERIFY(isWellFormed(page.body));
    QVERIFY(page.body.contains("<div id=\"msg\" class=\"success\">"));
    QVERIFY(page.body.contains(user.toUtf8()));

    const Answer answer = client.get(signIn("/rs/casLogin/listCompany"));
    QCOMPARE(answer.contentType, QByteArray("application/json;charset=UTF-8"));
    QVERIFY(QJsonDocument::fromJson(answer.body).isArray());
    QTEST(array(answer).size(), "companies");
    QTEST(array(answer).at(0).toObject(), "first");
}

void TestServices::signInSetsCookiesAlongTheRedirect()
{
    Client client;
    const QByteArray ticket = inputValue(client.get(login()).body, "lt").toUtf8();
    const QByteArray before = client.cookie(login(), "JSESSIONID");

    client.setFollowRedirects(false);
    const Answer redirect = client.post(login(), formBody(ticket, "zhangwei", "123456"));
    QCOMPARE(redirect.status, 302);
    QCOMPARE(redirect.location, signIn("/login/success").toUtf8());
    QVERIFY(client.cookie(login(), "JSESSIONID") != before);
    QVERIFY(client.cookie(login(), "CASTGC").startsWith("TGT-"));
    QVERIFY(client.cookie(login(), "LOCALE").isNull());

    client.get(redirect.location);
    QCOMPARE(client.cookie(login(), "LOCALE"), QByteArray("zh_CN"));
}

void TestServices::signInIsRejected_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("contentType");
    QTest::addColumn<QString>("message");
    const QByteArray form = "application/x-www-form-urlencoded";
    const QString wrongPassword = "用户名或密码错误";
    const QString wrongTicket = "登录票据无效";

    row("wrong password", formBody("TICKET", "zhangwei", "1234567"), form, wrongPassword);
    row("unknown user", formBody("TICKET", "zhangsan", "123456"), form, wrongPassword);
    row("user in the wrong case", formBody("TICKET", "Zhangwei", "123456"), form, wrongPassword);
    row("clear password", QByteArray("lt=TICKET&username=zhangwei&password=123456"), form, wrongPassword);
    row("hash in upper case",
        QByteArray("lt=TICKET&username=zhangwei&password=E10ADC3949BA59ABBE56E057F20F883E"), form,
        wrongPassword);
    row("unknown ticket", formBody("LT-1-made-up", "zhangwei", "123456"), form, wrongTicket);
    row("no ticket", QByteArray("username=zhangwei&password=e10adc3949ba59abbe56e057f20f883e"), form,
        wrongTicket);
    row("not sent as a form", formBody("TICKET", "zhangwei", "123456"), QByteArray("text/plain"),
        wrongTicket);
}

void TestServices::signInIsRejected()
{
    QFETCH(QByteArray, body);
    QFETCH(const QByteArray, contentType);
    QFETCH(const QString, message);
    Client client;
    const QString ticket = inputValue(client.get(login()).body, "lt");
    body.replace("TICKET", ticket.toUtf8());

    const Answer answer = client.post(login(), body, contentType);
    QCOMPARE(answer.status, 200);
    QVERIFY(isWellFormed(answer.body));
    QVERIFY(answer.body.contains("<div id=\"msg\" class=\"errors\">" + message.toUtf8()));
    QVERIFY(inputValue(answer.body, "lt").startsWith("LT-"));
    QVERIFY(inputValue(answer.body, "lt") != ticket);
    QCOMPARE(client.get(signIn("/rs/casLogin/listCompany")).url.path(), QString("/login"));
}

void TestServices::ticketIsUsedUpByAFailure()
{
    Client client;
    const QString ticket = inputValue(client.get(login()).body, "lt");
    const QByteArray rejected = client.post(login(), formBody(ticket, "zhangwei", "wrong")).body;
    QVERIFY(client.post(login(), formBody(ticket, "zhangwei", "123456")).body.contains("登录票据无效"));
    // The page with the error has a new, valid ticket.
    const Answer again = client.post(login(), formBody(inputValue(rejected, "lt"), "zhangwei", "123456"));
    QCOMPARE(again.url.path(), QString("/login/success"));
}

void TestServices::ticketIsUsedUpByASuccess()
{
    Client client;
    const QByteArray body = formBody(inputValue(client.get(login()).body, "lt"), "zhangwei", "123456");
    QCOMPARE(client.post(login(), body).url.path(), QString("/login/success"));
    QVERIFY(Client().post(login(), body).body.contains("登录票据无效"));
}

void TestServices::successPageNeedsASession()
{
    Client client;
    QCOMPARE(client.get(signIn("/login/success")).url.path(), QString("/login"));
}

void TestServices::guardedPathSendsToTheForm_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("method");
    for (const QString& path : GuardedPaths)
        QTest::newRow(qPrintable(path)) << path << QByteArray(path.endsWith("casLogin") ? "POST" : "GET");
}

void TestServices::guardedPathSendsToTheForm()
{
    QFETCH(const QString, path);
    QFETCH(const QByteArray, method);
    Client client;
    client.setFollowRedirects(false);
    const Answer redirect = client.send(method, signIn(path), binding("1001"), "application/json");
    QCOMPARE(redirect.status, 302);
    QCOMPARE(redirect.location, login().toUtf8() + "?service=" + QUrl::toPercentEncoding(signIn(path)));

    client.setFollowRedirects(true);
    const Answer page = client.get(signIn(path));
    QCOMPARE(page.status, 200);
    QVERIFY(!page.isJson());
    QVERIFY(inputValue(page.body, "lt").startsWith("LT-"));
}

void TestServices::tokenNeedsAnEnterprise()
{
    Client client;
    client.signIn(m_services->signInUrl(), "lina", "lina2024");
    QCOMPARE(client.get(signIn("/rs/cim/nelvo/client_token")).status, 403);

    const Answer bound = client.post(signIn("/rs/casLogin/casLogin"), binding("1007"), "application/json");
    QCOMPARE(bound.status, 200);
    QCOMPARE(code(bound), 0);

    const Answer token = client.get(signIn("/rs/cim/nelvo/client_token"));
    QCOMPARE(token.contentType, QByteArray("text/plain; charset=utf-8"));
    QVERIFY2(token.body.startsWith("iot-1007-"), token.body.constData());
    QCOMPARE(client.get(signIn("/rs/cim/nelvo/client_token")).body, token.body);

    client.post(signIn("/rs/casLogin/casLogin"), binding("1008"), "application/json");
    QVERIFY(client.get(signIn("/rs/cim/nelvo/client_token")).body.startsWith("iot-1008-"));
}

void TestServices::bindingOfAForeignEnterpriseFails()
{
    Client client;
    client.signIn(m_services->signInUrl(), "zhangwei", "123456");
    for (const char* enterprise : {"1002", "9999", ""}) {
        const Answer answer =
            client.post(signIn("/rs/casLogin/casLogin"), binding(enterprise), "application/json");
        QCOMPARE(answer.status, 200);
        QCOMPARE(code(answer), 403);
    }
    QCOMPARE(client.get(signIn("/rs/cim/nelvo/client_token")).status, 403);
}

void TestServices::bindingOfSomethingElseThanJsonFails()
{
    Client client;
    client.signIn(m_services->signInUrl(), "zhangwei", "123456");
    for (const char* body :
         {"epid=1001", "[]", R"({"epid": 1001, "version": "1.0.0"})", R"({"epid": "1001"})"}) {
        const Answer answer = client.post(signIn("/rs/casLogin/casLogin"), body, "application/json");
        QCOMPARE(answer.status, 200);
        QCOMPARE(code(answer), 400);
    }
    QCOMPARE(client.get(signIn("/rs/cim/nelvo/client_token")).status, 403);
}

void TestServices::serverListNamesTheServices()
{
    Client client;
    client.signIn(m_services->signInUrl(), "wangfang", "wangfang");
    const QJsonArray servers = array(client.get(signIn("/rs/casLogin/serverUrl")));
    QVERIFY(servers.contains(
        QJsonObject{{"serverName", "varlo-editor"}, {"serverURL", m_services->editorUrl()}}));
    QVERIFY(servers.contains(QJsonObject{{"serverName", "iot_new"}, {"serverURL", signIn("/iot")}}));
    QVERIFY(servers.size() > 2);
}

void TestServices::logoutEndsTheSession()
{
    Client client;
    client.signIn(m_services->signInUrl(), "zhangwei", "123456");
    Client other;
    other.signIn(m_services->signInUrl(), "zhangwei", "123456");

    const Answer answer = client.get(signIn("/rs/casLogin/logout"));
    QCOMPARE(code(answer), 0);
    QVERIFY(client.cookie(login(), "JSESSIONID").isNull());
    QVERIFY(client.cookie(login(), "CASTGC").isNull());
    QCOMPARE(client.get(signIn("/rs/casLogin/listCompany")).url.path(), QString("/login"));
    QVERIFY(other.get(signIn("/rs/casLogin/listCompany")).isJson());
}

void TestServices::forgetSessionsForgetsSessionsAndTickets()
{
    Client client;
    client.signIn(m_services->signInUrl(), "zhangwei", "123456");
    const QString ticket = inputValue(client.get(login()).body, "lt");
    const QByteArray session = client.cookie(login(), "JSESSIONID");

    m_services->forgetSessions();
    QCOMPARE(client.get(signIn("/rs/casLogin/listCompany")).url.path(), QString("/login"));
    QVERIFY(client.cookie(login(), "JSESSIONID") != session);
    QVERIFY(client.post(login(), formBody(ticket, "zhangwei", "123456")).body.contains("登录票据无效"));
}

void TestServices::unknownPathIsNotFound()
{
    Client client;
    QCOMPARE(client.get(signIn("/nowhere")).status, 404);
    QCOMPARE(client.get(m_services->editorUrl() + "/login").status, 404);
    client.signIn(m_services->signInUrl(), "zhangwei", "123456");
    QCOMPARE(client.get(signIn("/rs/nowhere")).status, 404);
}

void TestServices::wrongMethodIsNotAllowed()
{
    Client client;
    QCOMPARE(client.post(heartbeat(), "x").status, 405);
    const Answer answer = client.send("DELETE", login());
    QCOMPARE(answer.status, 405);
    QCOMPARE(answer.allow, QByteArray("GET, POST"));
}

void TestServices::heartbeatSetsCookiesOnce()
{
    Client client;
    const Answer answer = client.get(heartbeat());
    QCOMPARE(answer.status, 200);
    QCOMPARE(code(answer), 0);
    const QByteArray session = client.cookie(heartbeat(), "EDITORSESSION");
    const QByteArray route = client.cookie(heartbeat(), "route");
    QCOMPARE(session.size(), 32);
    QCOMPARE(route.size(), 16);

    client.get(heartbeat());
    QCOMPARE(client.cookie(heartbeat(), "EDITORSESSION"), session);
    QCOMPARE(client.cookie(heartbeat(), "route"), route);
    QCOMPARE(m_services->log().requests().last().header("cookie"),
             "EDITORSESSION=" + session + "; route=" + route);
}

void TestServices::heartbeatSetsCookiesAgainOnceForgotten()
{
    Client client;
    client.get(heartbeat());
    const QByteArray session = client.cookie(heartbeat(), "EDITORSESSION");
    m_services->forgetSessions();
    client.get(heartbeat());
    QVERIFY(client.cookie(heartbeat(), "EDITORSESSION") != session);
}

void TestServices::logKeepsHeadersAsReceived()
{
    RawConnection raw(m_services->signInUrl());
    raw.send(
        "POST /login?a=%20b&c HTTP/1.1\r\nhOST: here\r\nX-Twice: 1\r\nacCept: text/*;q=0.3\r\nx-TWICE: 2\r\n"
        "X-Empty:\r\ncontent-LENGTH: 7\r\n\r\n\x01 %\xc3\xa4\r\n");
    QVERIFY(raw.readAnswer().startsWith("HTTP/1.1 200 OK\r\n"));

    QCOMPARE(m_services->log().requests().size(), 1);
    const LoggedRequest logged = m_services->log().requests().first();
    QCOMPARE(logged.service, QByteArray("sign-in"));
    QCOMPARE(logged.method, QByteArray("POST"));
    QCOMPARE(logged.target, QByteArray("/login?a=%20b&c"));
    QCOMPARE(logged.path(), QByteArray("/login"));
    QCOMPARE(logged.body, QByteArray("\x01 %\xc3\xa4\r\n"));
    QByteArray headers;
    for (const auto& header : logged.headers)
        headers += header.name + '=' + header.value + '|';
    QCOMPARE(headers,
             QByteArray("hOST=here|X-Twice=1|acCept=text/*;q=0.3|x-TWICE=2|X-Empty=|content-LENGTH=7|"));
}

void TestServices::logKeepsTheOrderOfBothServices()
{
    Client client;
    client.get(heartbeat());
    client.get(login());
    client.get(heartbeat() + "?n=2");
    QByteArrayList seen;
    const auto requests = m_services->log().requests();
    for (const LoggedRequest& request : requests)
        seen.append(request.service + ' ' + request.target);
    QCOMPARE(seen, (QByteArrayList{"editor /org/heartbeat", "sign-in /login", "editor /org/heartbeat?n=2"}));

    m_services->log().clear();
    QVERIFY(m_services->log().requests().isEmpty());
}

void TestServices::logReadsAChunkedBody()
{
    RawConnection raw(m_services->editorUrl());
    raw.send(
        "PUT /x HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n");
    QVERIFY(raw.readAnswer().startsWith("HTTP/1.1 404"));
    QCOMPARE(m_services->log().requests().first().body, QByteArray("abcde"));
}

void TestServices::loggedRequestFindsHeadersInAnyCase()
{
    LoggedRequest request;
    request.headers = {{"Cookie", "a"}, {"cookie", "b"}, {"Empty", ""}};
    QCOMPARE(request.header("COOKIE"), QByteArray("a"));
    QVERIFY(!request.header("empty").isNull());
    QVERIFY(request.header("other").isNull());
}

void TestServices::cannedReplyReplacesTheAnswer()
{
    m_services->setReply("GET", "/org/heartbeat", {418, "text/x-tea", "tea", {{"Set-Cookie", "pot=hot"}}});
    Client client;
    const Answer answer = client.get(heartbeat() + "?whoever");
    QCOMPARE(answer.status, 418);
    QCOMPARE(answer.contentType, QByteArray("text/x-tea"));
    QCOMPARE(answer.body, QByteArray("tea"));
    QCOMPARE(client.cookie(heartbeat(), "pot"), QByteArray("hot"));
    QVERIFY(client.cookie(heartbeat(), "EDITORSESSION").isNull());
    QCOMPARE(client.post(heartbeat(), "x").status, 405);

    m_services->setReply("GET", "/rs/casLogin/listCompany", json("[]"));
    QCOMPARE(client.get(signIn("/rs/casLogin/listCompany")).body, QByteArray("[]"));

    m_services->clearReplies();
    QCOMPARE(client.get(heartbeat()).status, 200);
}

void TestServices::cannedReplyWithoutBody()
{
    m_services->setReply("GET", "/empty", {204, "text/plain", "not sent", {}});
    RawConnection raw(m_services->signInUrl());
    raw.send("GET /empty HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n");
    const QByteArray answer = raw.readToEnd();
    QVERIFY(answer.startsWith("HTTP/1.1 204 No Content\r\n"));
    QVERIFY(answer.endsWith("\r\n\r\n"));
}

void TestServices::connectionServesSeveralRequests()
{
    RawConnection raw(m_services->editorUrl());
    for (int i = 0; i < 3; ++i) {
        raw.send("GET /org/heartbeat HTTP/1.1\r\nHost: h\r\n\r\n");
        const QByteArray answer = raw.readAnswer();
        QVERIFY(answer.startsWith("HTTP/1.1 200 OK\r\nServer: nelvo-services\r\nDate: "));
        QVERIFY(
            answer.endsWith("\r\nContent-Type: application/json;charset=UTF-8\r\nContent-Length: 20\r\n\r\n"
                            "{\"code\":0,\"data\":{}}"));
        QVERIFY(raw.isConnected());
    }
    // Two requests that are sent together get their replies in order.
    raw.send("GET /org/heartbeat HTTP/1.1\r\nHost: h\r\n\r\nGET /nowhere HTTP/1.1\r\nHost: h\r\n\r\n");
    QVERIFY(raw.readAnswer().startsWith("HTTP/1.1 200"));
    QVERIFY(raw.readAnswer().startsWith("HTTP/1.1 404"));
}

void TestServices::connectionClosesWhenAsked()
{
    RawConnection raw(m_services->editorUrl());
    raw.send("GET /org/heartbeat HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n");
    const QByteArray answer = raw.readToEnd();
    QVERIFY(answer.contains("\r\nConnection: close\r\n"));
    QVERIFY(answer.endsWith("{\"code\":0,\"data\":{}}"));
    QVERIFY(!raw.isConnected());
}

void TestServices::connectionRefusesWhatIsNotHttp()
{
    RawConnection raw(m_services->signInUrl());
    raw.send("how are you?\r\n\r\n");
    QVERIFY(raw.readToEnd().startsWith("HTTP/1.1 400 Bad Request\r\n"));
    QVERIFY(m_services->log().requests().isEmpty());
}

void TestServices::seedIsChecked_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("complaint");

    row("empty", QByteArray(), "no JSON, line 1");
    row("cut", QByteArray("{\n\"enterprises\": [],\n\"acc"), "no JSON, line 3");
    row("array", QByteArray("[]"), "must hold a JSON object");
    row("no enterprises", QByteArray(R"({"accounts": []})"), "the seed needs an array \"enterprises\"");
    row("no accounts", QByteArray(R"({"enterprises": []})"), "the seed needs an array \"accounts\"");
    row("enterprise of the wrong kind", QByteArray(R"({"enterprises": [1], "accounts": []})"),
        "enterprises[0] must be an object");
    row("id of the wrong kind", QByteArray(R"({"enterprises": [{"id": "1", "name": "n"}], "accounts": []})"),
        "enterprises[0]: \"id\" must be a whole number");
    row("id with a fraction", QByteArray(R"({"enterprises": [{"id": 1.5, "name": "n"}], "accounts": []})"),
        "enterprises[0]: \"id\" must be a whole number");
    row("no name", QByteArray(R"({"enterprises": [{"id": 1}], "accounts": []})"),
        "enterprises[0] needs a text \"name\"");
    row("enterprise twice",
        QByteArray(R"({"enterprises": [{"id": 1, "name": "n"}, {"id": 1, "name": "m"}], "accounts": []})"),
        "enterprises[1]: there is an enterprise 1 already");
    row("account of the wrong kind", QByteArray(R"({"enterprises": [], "accounts": ["me"]})"),
        "accounts[0] must be an object");
    row("no user", QByteArray(R"({"enterprises": [], "accounts": [{"password": "p"}]})"),
        "accounts[0] needs a text \"user\"");
    row("password of the wrong kind",
        QByteArray(R"({"enterprises": [], "accounts": [{"user": "u", "password": 123456}]})"),
        "accounts[0] needs a text \"password\"");
    row("no membership", QByteArray(R"({"enterprises": [], "accounts": [{"user": "u", "password": "p"}]})"),
        "accounts[0] needs an array \"enterprises\"");
    row("unknown enterprise",
        QByteArray(
            R"({"enterprises": [], "accounts": [{"user": "u", "password": "p", "enterprises": [7]}]})"),
        "accounts[0]: enterprises[0]: there is no enterprise 7");
    row("account twice",
        QByteArray(R"({"enterprises": [], "accounts": [{"user": "u", "password": "p", "enterprises": []},
                                                          {"user": "u", "password": "q", "enterprises": []}]})"),
        "accounts[1]: there is an account \"u\" already");
}

void TestServices::seedIsChecked()
{
    QFETCH(const QByteArray, json);
    QFETCH(const QString, complaint);
    const QTemporaryDir folder;
    ServicesOptions options;
    options.seedFile = folder.filePath("seed.json");
    QFile file(options.seedFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(json);
    file.close();

    QString error;
    QVERIFY(!Services(options).start(&error));
    QVERIFY2(error.startsWith("seed file " + options.seedFile + ": " + complaint), qPrintable(error));
}

void TestServices::seedThatIsMissing()
{
    const QTemporaryDir folder;
    ServicesOptions options;
    QString error;
    options.seedFile = folder.filePath("missing.json");
    QVERIFY(!Services(options).start(&error));
    QVERIFY2(error.startsWith("seed file " + options.seedFile + ": "), qPrintable(error));
    options.seedFile = folder.path();
    QVERIFY(!Services(options).start(&error));
    QVERIFY2(error.startsWith("seed file " + folder.path() + ": "), qPrintable(error));
    QVERIFY(!Services(options).start());
}

void TestServices::seedOfOnesOwn()
{
    const QTemporaryDir folder;
    ServicesOptions options;
    options.seedFile = folder.filePath("seed.json");
    QFile file(options.seedFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"enterprises": [{"id": 9007199254740991, "name": "big"}],
                   "accounts": [{"user": "a&b <c>", "password": "+ %", "enterprises": [9007199254740991]}]})");
    file.close();

    StartedServices services(options);
    Client client;
    const Answer page = client.signIn(services.signInUrl(), "a&b <c>", "+ %");
    QVERIFY(page.body.contains("a&amp;b &lt;c&gt;"));
    const QJsonObject company =
        array(client.get(services.signInUrl() + "/rs/casLogin/listCompany"))[0].toObject();
    QCOMPARE(company.value("enterpriseId").toDouble(), 9007199254740991.0);
    QCOMPARE(code(client.post(services.signInUrl() + "/rs/casLogin/casLogin", binding("9007199254740991"),
                              "application/json")),
             0);
}

void TestServices::startFailsOnATakenPort()
{
    ServicesOptions options;
    options.editorPort = static_cast<quint16>(QUrl(m_services->signInUrl()).port());
    Services second(options);
    QString error;
    QVERIFY(!second.start(&error));
    QVERIFY2(error.contains(QString::number(options.editorPort)), qPrintable(error));
    QCOMPARE(Client().get(login()).status, 200);
}

void TestServices::startWorksAgainAfterStop()
{
    m_services->stop();
    m_services->stop();
    QCOMPARE(Client().get(login()).error, QNetworkReply::ConnectionRefusedError);
    QVERIFY(m_services->start());
    QCOMPARE(Client().get(login()).status, 200);
}

void TestServices::stopEndsIdleConnections()
{
    RawConnection idle(m_services->editorUrl());
    RawConnection halfway(m_services->signInUrl());
    QVERIFY(idle.isConnected());
    halfway.send("GET /login HTTP/1.1\r\nHo");
    m_services->stop();
    idle.readToEnd();
    halfway.readToEnd();
    QVERIFY(!idle.isConnected());
    QVERIFY(!halfway.isConnected());
}

QTEST_GUILESS_MAIN(TestServices)
#include "test_services.moc"
