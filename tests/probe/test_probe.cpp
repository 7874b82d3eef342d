#include "tests/probe/proberun.h"
#include "tests/support/accounts.h"
#include "tests/support/files.h"
#include "tests/support/row.h"
#include "tests/support/startedservices.h"
#include "tests/support/wine.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

#include <functional>
#include <memory>

using NelvoDevkit::Fault;
using NelvoDevkit::Services;
using TestSupport::json;
using TestSupport::passwordOf;
using TestSupport::row;
using TestSupport::StartedServices;

namespace {

constexpr char User[] = "lina";
constexpr char IotToken[] = "iot-token-of-this-test";

using Change = std::function<void(Services&)>;

Change fault(Fault kind, const char* path, const char* method = "", int value = 0)
{
    return [=](Services& services) {
        services.addFault({kind, QString::fromLatin1(path), method, value, false});
    };
}

Change reply(const char* method, const char* path, const QByteArray& body,
             const QByteArray& type = "application/json")
{
    return [=](Services& services) {
        services.setReply(method, QString::fromLatin1(path), {200, type, body, {}});
    };
}

//! True if the request only reads data or is part of a sign-in. The probe must send no other requests.
bool isHarmless(const NelvoDevkit::LoggedRequest& request)
{
    static const QByteArrayList posts{"/login", "/rs/casLogin/casLogin",
                                      "/v1.0/service/sys/productVersion/findLatest"};
    return request.method == "GET" || (request.method == "POST" && posts.contains(request.path()));
}

} // namespace

Q_DECLARE_METATYPE(Change)

//! Runs of the program nelvo-probe with the simulator.
class TestProbe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void allIsWell();
    void tableIsForPeople();
    void serverIsLeftAsItWas();
    void chosenEnterpriseIsEntered();
    void whatIsWrongIsTold_data();
    void whatIsWrongIsTold();
    void cutFormIsTold();
    void redirectedFormIsTold();
    void unreachableServers_data();
    void unreachableServers();
    void httpsNeedsATrustedCertificate();
    void missingPlugin();
    void passwordComesByThreeWays_data();
    void passwordComesByThreeWays();
    void noSecretIsTold_data();
    void noSecretIsTold();
    void wrongUsage_data();
    void wrongUsage();
    void help();

private:
    int run(const QStringList& arguments, const QString& password = passwordOf(User));
    //! Runs the probe with the account, the simulator's address and JSON output.
    int probe(const QStringList& further = {}, const QString& user = QString::fromLatin1(User));
    QStringList updateOptions() const;
    void expect(const QString& key, const QString& words) const;
    QString reportText() const;

    std::unique_ptr<StartedServices> m_services;
    std::unique_ptr<QTemporaryDir> m_folder;
    ProbeRun m_run;
};

void TestProbe::initTestCase()
{
    m_services = std::make_unique<StartedServices>();
}

void TestProbe::init()
{
    m_services->reset();
    m_services->forgetSessions();
    m_services->resetState();
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestProbe::cleanup()
{
    m_services->clearFaults();
    if (QTest::currentTestFailed())
        qInfo("%s\n%s", m_run.output.constData(), m_run.error.constData());
}

int TestProbe::run(const QStringList& arguments, const QString& password)
{
    m_run = ProbeRun(arguments, password);
    return m_run.status;
}

int TestProbe::probe(const QStringList& further, const QString& user)
{
    m_run = ProbeRun::withJson(m_services->signInUrl(), user, further);
    return m_run.status;
}

QStringList TestProbe::updateOptions() const
{
    return {"--update-url", m_services->updateUrl(), "--product",
            "nelvo-editor", "--update-token",        m_services->updates().token()};
}

void TestProbe::expect(const QString& key, const QString& words) const
{
    QCOMPARE(m_run.verdict(key), QStringLiteral("wrong"));
    QVERIFY2(m_run.words(key).contains(words), qPrintable(m_run.words(key)));
    QCOMPARE(m_run.json()["well"].toBool(true), false);
}

QString TestProbe::reportText() const
{
    return QString::fromUtf8(TestSupport::contentOf(m_folder->filePath(QStringLiteral("report"))));
}

void TestProbe::allIsWell()
{
    QCOMPARE(probe(updateOptions()), int(ProbeRun::Well));
    QCOMPARE(m_run.json()["well"].toBool(), true);
    QCOMPARE(m_run.json()["server"].toString(), m_services->signInUrl());
    QCOMPARE(m_run.json()["account"].toString(), QStringLiteral("l***"));
    QCOMPARE(m_run.json()["plugin"].toString(), QStringLiteral("1.0.0"));
    const QVector<QStringList> expected{
        {"plug-in", "", "version 1.0.0"},
        {"sign-in-form", "GET /login", ""},
        {"sign-in", "POST /login", ""},
        {"enterprises", "GET /rs/casLogin/listCompany", "12 enterprises"},
        {"binding", "POST /rs/casLogin/casLogin", "1001 远景建筑设计研究院"},
        {"addresses", "GET /rs/casLogin/serverUrl",
         QStringLiteral("editor service %1, IoT service %2/iot")
             .arg(m_services->editorUrl(), m_services->signInUrl())},
        {"token", "GET /rs/cim/nelvo/client_token", ""},
        {"heartbeat", "GET /org/heartbeat", ""},
        {"organisation", "GET /org/tree", "11 units"},
        {"projects", "GET /scene/project", "3 projects"},
        {"models", "GET /bim/relation/", "13 models"},
        {"drawings", "GET /bim/relation/dwg", "4 drawings"},
        {"updates", "POST /v1.0/service/sys/productVersion/findLatest", "offers nelvo-editor 1.0.1"},
        {"sign-out", "GET /rs/casLogin/logout", ""},
    };
    const QJsonArray steps = m_run.json()["steps"].toArray();
    QCOMPARE(steps.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const QJsonObject found = steps.at(i).toObject();
        QCOMPARE(
            (QStringList{found["step"].toString(), found["request"].toString(), found["words"].toString()}),
            expected.at(i));
        QCOMPARE(found["verdict"].toString(), QStringLiteral("well"));
        QCOMPARE(found["askedDirectly"].toBool(true), false);
        QVERIFY(found["milliseconds"].toInt(-1) >= 0);
    }
}

void TestProbe::tableIsForPeople()
{
    const QStringList arguments{"--url",    m_services->signInUrl(), "--user", User,
                                "--plugin", NELVO_PLUGIN_FOLDER};
    QCOMPARE(run(arguments), int(ProbeRun::Well));
    QCOMPARE(m_run.error, QByteArray()); // Qt logs no message
    const QString table = QString::fromUtf8(m_run.output);
    const auto has = [](const QString& text, const char* pattern) {
        return QRegularExpression(QString::fromLatin1(pattern), QRegularExpression::MultilineOption)
            .match(text)
            .hasMatch();
    };
    QVERIFY(has(table, "^http://127\\.0\\.0\\.1:\\d+ as l\\*\\*\\*$"));
    QVERIFY(has(table, "^  well        scene projects +\\d+ ms  3 projects$"));
    QVERIFY(has(table, "^  not asked   update service +--update-url was not given$"));
    QVERIFY(table.endsWith(QStringLiteral("\nAll is well.\n")));

    QCOMPARE(run(arguments, QStringLiteral("not hers")), int(ProbeRun::Wrong));
    const QString wrong = QString::fromUtf8(m_run.output);
    QVERIFY(has(wrong, "^  WRONG       sign-in +\\d+ ms  user name or password rejected"));
    QVERIFY(has(wrong, "^  not reached scene projects$"));
    QVERIFY(wrong.endsWith(QStringLiteral("\nOne thing is wrong.\n")));
}

void TestProbe::serverIsLeftAsItWas()
{
    const QJsonObject before = m_services->editorData().state();
    QVERIFY(!before.isEmpty());
    QCOMPARE(probe(updateOptions()), int(ProbeRun::Well));
    QCOMPARE(m_services->editorData().state(), before);
    const QVector<NelvoDevkit::LoggedRequest> requests = m_services->log().requests();
    for (const NelvoDevkit::LoggedRequest& request : requests)
        QVERIFY2(isHarmless(request), (request.method + ' ' + request.target).constData());
    // The probe signs out through the plug-in.
    QVERIFY(std::any_of(requests.begin(), requests.end(), [](const NelvoDevkit::LoggedRequest& request) {
        return request.path() == "/rs/casLogin/logout";
    }));
}

void TestProbe::chosenEnterpriseIsEntered()
{
    QCOMPARE(probe({"--enterprise", "1003"}), int(ProbeRun::Well));
    QCOMPARE(m_run.words("binding"), QStringLiteral("1003 江南水利工程局"));
    QCOMPARE(m_run.words("projects"), QStringLiteral("1 project"));
}

void TestProbe::whatIsWrongIsTold_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("step");
    QTest::addColumn<QString>("words");
    QTest::addColumn<bool>("askedDirectly");
    QTest::addColumn<QStringList>("further");
    QTest::addColumn<QString>("user");
    const auto row = [](const char* name, const Change& change, const char* step, const char* words,
                        bool askedDirectly = false, const QStringList& further = {},
                        const char* user = User) {
        QTest::newRow(name) << change << QString::fromLatin1(step) << QString::fromUtf8(words)
                            << askedDirectly << further << QString::fromUtf8(user);
    };
    const QByteArray html = "text/html; charset=utf-8";
    const char* const httpError = "the server answered with HTTP 500 (Internal Server Error) at /";
    const char* const noJson = "the reply is no JSON: illegal value";
    const char* const lost = "redirects the request to its sign-in form: the session is lost";
    const Change nothing = [](Services&) {};

    row("form without the section", reply("GET", "/login", "<html><body id=\"cas\"/></html>", html),
        "sign-in-form", "the form page lacks the section that is looked for", true);
    row("form that is not well-formed", reply("GET", "/login", "<html><br></html>", html), "sign-in-form",
        "the form page is not well-formed XML: line 1", true);
    row("form with an HTTP error", fault(Fault::Status, "/login", "GET", 500), "sign-in-form", httpError);
    row("form in a circle", fault(Fault::EndlessRedirect, "/login", "GET"), "sign-in-form",
        "the server redirects in a circle");
    row("form of a service that refuses", fault(Fault::Refuse, ""), "sign-in-form",
        "the connection was refused");
    row("form and a reset", fault(Fault::Reset, "/login"), "sign-in-form",
        "the server closed the connection before its reply was complete");
    row("answer to the form with an HTTP error", fault(Fault::Status, "/login", "POST", 500), "sign-in",
        httpError);
    row("answer to the form not well-formed", fault(Fault::WrongJson, "/login", "POST"), "sign-in",
        "the page that answers the form cannot be read");
    row("unknown account", nothing, "sign-in", "user name or password rejected", false, {}, "nobody");
    row("lost session", fault(Fault::LoseSession, "/rs/casLogin/listCompany"), "enterprises",
        "does not know the session any more");
    row("list that is no JSON", fault(Fault::NotJson, "/rs/casLogin/listCompany"), "enterprises",
        "the enterprise list is no JSON");
    row(
        "list and answer to the form that are something else",
        [](Services& services) {
            fault(Fault::NotJson, "/login", "POST")(services);
            fault(Fault::NotJson, "/rs/casLogin/listCompany")(services);
        },
        "enterprises", "is no JSON, which may also mean that the password was rejected");
    row("list with an HTTP error", fault(Fault::Status, "/rs/casLogin/listCompany", "", 500), "enterprises",
        httpError);
    row("no enterprise", nothing, "enterprises", "the account has no enterprise", false, {}, "wangfang");
    row("enterprises without ids", reply("GET", "/rs/casLogin/listCompany", R"([{"enterpriseName":"x"}])"),
        "enterprises", "no element of the list has an \"enterpriseId\"");
    row("another enterprise", nothing, "enterprises",
        "the account does not have the enterprise 77; it has 1001", false, {"--enterprise", "77"},
        "zhangwei");

    row("binding with an HTTP error", fault(Fault::Status, "/rs/casLogin/casLogin", "", 500), "binding",
        httpError);
    row("binding with a lost session", fault(Fault::LoseSession, "/rs/casLogin/casLogin"), "binding", lost);
    row("no editor service",
        reply("GET", "/rs/casLogin/serverUrl", R"([{"serverName":"iot_new","serverURL":"http://i"}])"),
        "addresses", "the address list names no editor service (\"varlo-editor\")");
    row("addresses that are no list", fault(Fault::WrongJson, "/rs/casLogin/serverUrl"), "addresses",
        "the address list names no editor service (\"varlo-editor\")");
    row("addresses that are no JSON", fault(Fault::NotJson, "/rs/casLogin/serverUrl"), "addresses", noJson);
    row("addresses with an HTTP error", fault(Fault::Status, "/rs/casLogin/serverUrl", "", 500), "addresses",
        httpError);
    row("addresses with a lost session", fault(Fault::LoseSession, "/rs/casLogin/serverUrl"), "addresses",
        lost);
    row("editor service nowhere",
        reply("GET", "/rs/casLogin/serverUrl",
              R"([{"serverName":"varlo-editor","serverURL":"http://127.0.0.1:1"}])"),
        "heartbeat", "the connection was refused");
    row("no token", fault(Fault::Status, "/rs/cim/nelvo/client_token", "", 403), "token",
        "the server answered with HTTP 403 (Forbidden) at /rs/cim/nelvo/client_token");
    row("empty token", reply("GET", "/rs/cim/nelvo/client_token", "", "text/plain"), "token",
        "the reply is empty");
    row("page for a token", reply("GET", "/rs/cim/nelvo/client_token", "<html/>", html), "token",
        "the reply is a page");
    row("heartbeat without cookies", reply("GET", "/org/heartbeat", "{}"), "heartbeat",
        "the heartbeat sets no cookie");
    row("heartbeat that is no JSON", fault(Fault::NotJson, "/org/heartbeat"), "heartbeat", noJson);
    row("heartbeat with an HTTP error", fault(Fault::Status, "/org/heartbeat", "", 500), "heartbeat",
        httpError);

    row("organisation with an HTTP error", fault(Fault::Status, "/org/tree", "", 500), "organisation",
        httpError);
    row("organisation for an unknown session", fault(Fault::Status, "/org/tree", "", 401), "organisation",
        "HTTP 401 at /org/tree: the session is unknown; the request carried the cookies "
        "EDITORSESSION");
    row(
        "organisation for a cookie of another path",
        [](Services& services) {
            services.setReply(
                "GET", QStringLiteral("/org/heartbeat"),
                {200, "application/json", "{}", {{"Set-Cookie", "ID=1; Path=/editor; Secure"}}});
            fault(Fault::Status, "/org/tree", "", 401)(services);
        },
        "organisation",
        ", but not ID (Domain 127.0.0.1, Path /editor, Secure): look at Domain, Path and expiry");
    row("organisation that is no JSON", fault(Fault::NotJson, "/org/tree"), "organisation", noJson);
    row("organisation without a tree", fault(Fault::WrongJson, "/org/tree"), "organisation",
        "the reply holds no tree under \"data\"");
    row("projects with an HTTP error", fault(Fault::Status, "/scene/project", "", 500), "projects",
        httpError);
    row("projects that are no JSON", fault(Fault::NotJson, "/scene/project"), "projects", noJson);
    row("models with an HTTP error", fault(Fault::Status, "/bim/relation/", "", 500), "models", httpError);
    row("models that are no JSON", fault(Fault::NotJson, "/bim/relation/"), "models", noJson);
    row("drawings with an HTTP error", fault(Fault::Status, "/bim/relation/dwg", "", 500), "drawings",
        httpError);
    row("drawings that are no JSON", fault(Fault::NotJson, "/bim/relation/dwg"), "drawings", noJson);
    row("logout with an HTTP error", fault(Fault::Status, "/rs/casLogin/logout", "", 500), "sign-out",
        httpError);

    const auto findLatest = "/v1.0/service/sys/productVersion/findLatest";
    const QStringList updates = updateOptions();
    row("updates with an HTTP error", fault(Fault::Status, findLatest, "", 500), "updates", httpError, false,
        updates);
    row("updates that are no JSON", fault(Fault::NotJson, findLatest), "updates",
        "the reply is no JSON object", true, updates);
    row("updates without a version", reply("POST", findLatest, R"({"code":200,"data":{}})"), "updates",
        "the reply names no version", true, updates);
    row("updates for another token", nothing, "updates", "the reply has the code 401 in place of 200", true,
        updates + QStringList{"--update-token", "other"});
    row("updates of another product", nothing, "updates", "the reply has the code 404 in place of 200", true,
        updates + QStringList{"--product", "other"});
    row("package that does not exist", fault(Fault::Status, "/packages/NelvoEditor-1.0.1.zip", "", 404),
        "updates", "offers nelvo-editor 1.0.1, but not its package", true, updates);
    row("updates nowhere", nothing, "updates", "the connection was refused", false,
        updates + QStringList{"--update-url", "http://127.0.0.1:1"});
}

void TestProbe::whatIsWrongIsTold()
{
    QFETCH(Change, change);
    QFETCH(QString, step);
    QFETCH(QString, words);
    QFETCH(bool, askedDirectly);
    QFETCH(QStringList, further);
    QFETCH(QString, user);
    change(*m_services);
    const QVector<NelvoDevkit::FaultRule> faults = m_services->faults().rules();
    if (!faults.isEmpty() && faults.first().fault == Fault::Reset && TestSupport::isUnderWine())
        QSKIP(TestSupport::ResetsGoUnnoticed);
    QCOMPARE(probe(further, user), int(ProbeRun::Wrong));
    expect(step, words);
    QCOMPARE(m_run.step(step)["askedDirectly"].toBool(), askedDirectly);
}

//! A body that ends too early may be an error for Qt or not: this is a race in its network thread. Without
//! the error, the form cannot be read.
void TestProbe::cutFormIsTold()
{
    fault(Fault::CutBody, "/login", "GET")(*m_services);
    QCOMPARE(probe(), int(ProbeRun::Wrong));
    const auto step = QStringLiteral("sign-in-form");
    const auto closed = QStringLiteral("the server closed the connection before its reply was complete");
    const bool isNoticed = m_run.words(step).contains(closed);
    expect(step, isNoticed ? closed : QStringLiteral("the form page is not well-formed XML: line "));
}

//! The ticket of another server's form is invalid, so the service seems to reject the password.
void TestProbe::redirectedFormIsTold()
{
    const StartedServices other;
    m_services->setReply("GET", QStringLiteral("/login"),
                         {302, "text/plain", {}, {{"Location", other.signInUrl().toLatin1() + "/login"}}});
    QCOMPARE(probe(), int(ProbeRun::Wrong));
    expect(QStringLiteral("sign-in-form"),
           "redirected to " + other.signInUrl() +
               "; give that address: a redirect turns the POST of the form into a GET");
    QCOMPARE(m_run.verdict("sign-in"), QStringLiteral("not reached"));
}

void TestProbe::unreachableServers_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("words");
    row("refused", "http://127.0.0.1:1", "the connection was refused");
    row("no such host", "http://no-such-host.invalid", "no host of the name");
    row("no TLS there", m_services->signInUrl().replace("http:", "https:"), "the port does not speak TLS");
}

void TestProbe::unreachableServers()
{
    QFETCH(QString, url);
    QFETCH(QString, words);
    QCOMPARE(probe({"--url", url}), int(ProbeRun::Wrong));
    expect(QStringLiteral("sign-in-form"), words);
}

void TestProbe::httpsNeedsATrustedCertificate()
{
    NelvoDevkit::ServicesOptions options;
    options.https = true;
    StartedServices services(options);
    const QString file = m_folder->filePath(QStringLiteral("certificate.pem"));
    QFile certificate(file);
    QVERIFY(certificate.open(QIODevice::WriteOnly));
    certificate.write(services.certificatePem());
    certificate.close();
    const QStringList server{"--url", services.signInUrl()};

    QCOMPARE(probe(server), int(ProbeRun::Wrong));
    expect(QStringLiteral("sign-in-form"), QStringLiteral("certificate is not trusted here"));
    expect(QStringLiteral("sign-in-form"), QStringLiteral("self-signed"));
    QCOMPARE(m_run.step("sign-in-form")["askedDirectly"].toBool(), true);
    QCOMPARE(probe(server + QStringList{"--certificate", file}), int(ProbeRun::Well));
}

void TestProbe::missingPlugin()
{
    QCOMPARE(probe({"--plugin", m_folder->path()}), int(ProbeRun::Wrong));
    expect(QStringLiteral("plug-in"), QStringLiteral("the library could not be loaded"));
    QVERIFY(m_services->log().requests().isEmpty());
}

void TestProbe::passwordComesByThreeWays_data()
{
    QTest::addColumn<QStringList>("option");
    QTest::addColumn<QString>("variable");
    QTest::newRow("option") << QStringList{"--password", passwordOf(User)} << "other";
    QTest::newRow("variable") << QStringList() << passwordOf(User);
    QTest::newRow("standard input") << QStringList() << QString();
}

void TestProbe::passwordComesByThreeWays()
{
    QFETCH(QStringList, option);
    QFETCH(QString, variable);
    QCOMPARE(
        run(QStringList{"--url", m_services->signInUrl(), "--user", User, "--plugin", NELVO_PLUGIN_FOLDER} +
                option,
            variable),
        int(ProbeRun::Well));
    QVERIFY(!m_run.output.contains("Password:"));
}

void TestProbe::noSecretIsTold_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("status");
    QTest::newRow("well") << Change([](Services&) {}) << int(ProbeRun::Well);
    // An error text contains the requested address, and the update service's address contains the token.
    QTest::newRow("errors") << Change([](Services& services) {
        services.addFault(
            {Fault::Status, QStringLiteral("/v1.0/service/sys/productVersion/findLatest"), {}, 500, false});
        services.addFault({Fault::Status, QStringLiteral("/org/tree"), {}, 500, false});
    }) << int(ProbeRun::Wrong);
    QTest::newRow("rejected") << Change([](Services& services) {
        services.addFault({Fault::LoseSession, QStringLiteral("/rs/casLogin/listCompany"), {}, 0, false});
    }) << int(ProbeRun::Wrong);
    // The server's message contains the secrets.
    QTest::newRow("parrot") << Change([](Services& services) {
        const QString md5 = TestSupport::md5(passwordOf(User).toUtf8());
        const QJsonObject body{{"code", 401},
                               {"data", QJsonObject()},
                               {"message", passwordOf(User) + ' ' + md5 + ' ' + services.updates().token()}};
        services.setReply("POST", QStringLiteral("/v1.0/service/sys/productVersion/findLatest"),
                          json(QJsonDocument(body).toJson()));
    }) << int(ProbeRun::Wrong);
}

void TestProbe::noSecretIsTold()
{
    QFETCH(Change, change);
    QFETCH(int, status);
    change(*m_services);
    m_services->setReply("GET", QStringLiteral("/rs/cim/nelvo/client_token"),
                         {200, "text/plain", IotToken, {}});
    const QString file = m_folder->filePath(QStringLiteral("report"));
    QCOMPARE(probe(updateOptions() + QStringList{"--report", file}), status);
    const QString report = reportText();
    QVERIFY2(report.contains(QStringLiteral(" as l***\n")), qPrintable(report));
    QVERIFY2(report.contains(QStringLiteral("\nLog of the plug-in:\n")), qPrintable(report));

    QStringList secrets{QString::fromLatin1(User), passwordOf(User), m_services->updates().token(),
                        QString::fromLatin1(IotToken), TestSupport::md5(passwordOf(User).toUtf8())};
    const QVector<NelvoDevkit::LoggedRequest> requests = m_services->log().requests();
    for (const NelvoDevkit::LoggedRequest& request : requests) {
        const QStringList cookies =
            QString::fromLatin1(request.header("Cookie")).split(QStringLiteral("; "), Qt::SkipEmptyParts);
        for (const QString& cookie : cookies)
            secrets.append(cookie.section(QLatin1Char('='), 1));
        const auto ticket =
            QRegularExpression(QStringLiteral("lt=([^&]+)")).match(QString::fromLatin1(request.body));
        if (ticket.hasMatch())
            secrets.append(QUrl::fromPercentEncoding(ticket.captured(1).toLatin1()));
    }
    QVERIFY(secrets.size() > 8); // includes cookies and a ticket
    for (const QString& secret : qAsConst(secrets)) {
        QVERIFY2(!secret.isEmpty() && !report.contains(secret), qPrintable(secret));
        QVERIFY2(!QString::fromUtf8(m_run.output).contains(secret), qPrintable(secret));
        QVERIFY2(!QString::fromUtf8(m_run.error).contains(secret), qPrintable(secret));
    }
}

void TestProbe::wrongUsage_data()
{
    QTest::addColumn<QStringList>("further");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("unknown option")
        << QStringList{"--colour", "blue"}
        << QByteArray("nelvo-probe: Unknown option 'colour'; --help lists the options\n");
    QTest::newRow("no certificate file")
        << QStringList{"--certificate", "/none.pem"} << QByteArray("nelvo-probe: /none.pem: ");
    QTest::newRow("no certificate") << QStringList{"--certificate", NELVO_PROBE_SEED}
                                    << QByteArray("nelvo-probe: no certificate in " NELVO_PROBE_SEED
                                                  "; --help lists the options\n");
    QTest::newRow("no place for the report")
        << QStringList{"--report", "/none/report"} << QByteArray("nelvo-probe: /none/report: ");
}

void TestProbe::wrongUsage()
{
    QFETCH(QStringList, further);
    QFETCH(QByteArray, error);
    QCOMPARE(probe(further), int(ProbeRun::WrongUsage));
    QVERIFY2(m_run.error.startsWith(error), m_run.error.constData());
    QVERIFY(m_run.output.isEmpty());
    QVERIFY(m_services->log().requests().isEmpty());
}

void TestProbe::help()
{
    QCOMPARE(run({"--help"}), int(ProbeRun::Well));
    QVERIFY(m_run.output.contains("--update-url <ADDRESS>"));
}

QTEST_GUILESS_MAIN(TestProbe)
#include "test_probe.moc"
