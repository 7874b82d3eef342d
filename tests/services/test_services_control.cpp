#include "clients.h"

#include "tests/support/row.h"
#include "tests/support/startedservices.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using NelvoDevkit::Fault;
using NelvoDevkit::FaultRule;
using TestSupport::row;
using TestSupport::StartedServices;

Q_DECLARE_METATYPE(NelvoDevkit::Fault)

class TestServicesControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void helpNamesEveryPath();
    void requestsAreListedAndForgotten();
    void faultIsAdded_data();
    void faultIsAdded();
    void faultTakesAllParameters();
    void faultIsRefused_data();
    void faultIsRefused();
    void faultsAreListedAndRemoved();
    void faultsNeverStrikeTheControlPath();
    void sessionsAreForgotten_data();
    void sessionsAreForgotten();
    void wrongPathsAndMethods();

private:
    QString control(const QString& path) const { return m_services->controlUrl() + path; }
    QString heartbeat() const { return m_services->editorUrl() + "/org/heartbeat"; }

    std::unique_ptr<StartedServices> m_services;
    std::unique_ptr<Client> m_client;
};

void TestServicesControl::init()
{
    m_services = std::make_unique<StartedServices>();
    m_client = std::make_unique<Client>();
}

void TestServicesControl::cleanup()
{
    m_client.reset();
    m_services.reset();
}

void TestServicesControl::helpNamesEveryPath()
{
    const Answer help = m_client->get(control("/"));
    QCOMPARE(help.status, 200);
    QVERIFY(help.contentType.startsWith("text/plain"));
    for (const char* text :
         {"GET /requests", "DELETE /requests", "POST /faults", "GET /faults", "DELETE /faults",
          "DELETE /sessions", "POST /sessions/forget", "POST /push-out", "GET /state", "DELETE /state",
          "POST /generate", "GET /releases", "POST /releases", "GET /packages", "POST /packages ",
          "POST /packages/delivery", "cut-body", "lose-session"}) {
        QVERIFY2(help.body.contains(text), text);
    }
    QVERIFY(help.body.contains("curl -X DELETE " + control("/faults").toUtf8()));
    QVERIFY(help.body.contains(m_services->signInUrl().toUtf8()));
    QVERIFY(help.body.contains(m_services->editorUrl().toUtf8()));
    QVERIFY(help.body.contains(m_services->updateUrl().toUtf8()));
    QVERIFY(help.body.contains(m_services->packageUrl().toUtf8()));
    QVERIFY(!help.body.contains("{{"));
}

void TestServicesControl::requestsAreListedAndForgotten()
{
    m_client->post(m_services->editorUrl() + "/x?y=%20", "ä", "text/plain");
    const QJsonArray requests = QJsonDocument::fromJson(m_client->get(control("/requests")).body).array();
    QCOMPARE(requests.size(), 1);
    const QJsonObject request = requests[0].toObject();
    QCOMPARE(request["service"].toString(), QString("editor"));
    QCOMPARE(request["method"].toString(), QString("POST"));
    QCOMPARE(request["target"].toString(), QString("/x?y=%20"));
    QCOMPARE(request["body"].toString(), QString("ä"));
    QVERIFY(request["headers"].toArray().contains(
        QJsonObject{{"name", "Content-Type"}, {"value", "text/plain"}}));

    QCOMPARE(m_client->send("DELETE", control("/requests")).status, 200);
    QCOMPARE(m_client->get(control("/requests")).body.simplified(), QByteArray("[ ]"));
}

void TestServicesControl::faultIsAdded_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Fault>("fault");
    QTest::newRow("refuse") << "refuse" << Fault::Refuse;
    QTest::newRow("reset") << "reset" << Fault::Reset;
    QTest::newRow("stall") << "stall" << Fault::Stall;
    QTest::newRow("delay") << "delay&value=7" << Fault::Delay;
    QTest::newRow("cut-body") << "cut-body" << Fault::CutBody;
    QTest::newRow("status") << "status&value=599" << Fault::Status;
    QTest::newRow("not-json") << "not-json" << Fault::NotJson;
    QTest::newRow("wrong-json") << "wrong-json" << Fault::WrongJson;
    QTest::newRow("redirect") << "redirect" << Fault::Redirect;
    QTest::newRow("endless-redirect") << "endless-redirect" << Fault::EndlessRedirect;
    QTest::newRow("lose-session") << "lose-session" << Fault::LoseSession;
}

void TestServicesControl::faultIsAdded()
{
    QFETCH(const QString, name);
    const Answer answer = m_client->post(control("/faults?fault=" + name), {});
    QCOMPARE(answer.status, 200);
    QCOMPARE(m_services->faults().rules().size(), 1);
    const FaultRule rule = m_services->faults().rules().first();
    QTEST(rule.fault, "fault");
    QVERIFY(rule.path.isEmpty());
    QVERIFY(rule.method.isEmpty());
    QVERIFY(!rule.once);
}

void TestServicesControl::faultTakesAllParameters()
{
    m_client->post(control("/faults?fault=status&path=%2Flogin&method=get&value=503&once=1"), {});
    const FaultRule rule = m_services->faults().rules().value(0);
    QCOMPARE(rule.path, QString("/login"));
    QCOMPARE(rule.method, QByteArray("GET"));
    QCOMPARE(rule.value, 503);
    QVERIFY(rule.once);
    QCOMPARE(m_client->get(m_services->signInUrl() + "/login").status, 503);
    QCOMPARE(m_client->get(m_services->signInUrl() + "/login").status, 200);
}

void TestServicesControl::faultIsRefused_data()
{
    QTest::addColumn<QString>("parameters");
    QTest::addColumn<QByteArray>("complaint");
    row("none", "",
        QByteArray("parameter \"fault\" is one of refuse, reset, stall, delay, cut-body, "
                   "status, not-json, wrong-json, redirect, endless-redirect, lose-session"));
    row("unknown fault", "?fault=explode", QByteArray("\"explode\" is no fault"));
    row("unknown parameter", "?fault=reset&when=now",
        QByteArray("there are fault, path, method, value, once"));
    row("twice", "?fault=reset&fault=stall", QByteArray("\"fault\" stands there twice"));
    row("path", "?fault=reset&path=login", QByteArray("\"path\" must begin with /"));
    row("no status", "?fault=status", QByteArray("an HTTP status from 200 to 599"));
    row("low status", "?fault=status&value=199", QByteArray("an HTTP status from 200 to 599"));
    row("high status", "?fault=status&value=600", QByteArray("an HTTP status from 200 to 599"));
    row("no delay", "?fault=delay&value=soon", QByteArray("the milliseconds to wait"));
    row("negative delay", "?fault=delay&value=-1", QByteArray("the milliseconds to wait"));
    row("idle value", "?fault=reset&value=1", QByteArray("goes with delay and status only"));
    row("once", "?fault=reset&once=twice", QByteArray("\"once\" must be 0 or 1"));
}

void TestServicesControl::faultIsRefused()
{
    QFETCH(const QString, parameters);
    QFETCH(const QByteArray, complaint);
    const Answer answer = m_client->post(control("/faults" + parameters), {});
    QCOMPARE(answer.status, 400);
    QVERIFY2(answer.body.contains(complaint), answer.body.constData());
    QVERIFY(m_services->faults().rules().isEmpty());
}

void TestServicesControl::faultsAreListedAndRemoved()
{
    m_client->post(control("/faults?fault=delay&value=5&path=/a&method=PUT&once=1"), {});
    m_client->post(control("/faults?fault=refuse&once=0"), {});
    const QJsonArray expected = {
        QJsonObject{{"fault", "delay"}, {"path", "/a"}, {"method", "PUT"}, {"value", 5}, {"once", true}},
        QJsonObject{{"fault", "refuse"}, {"path", ""}, {"method", ""}, {"value", 0}, {"once", false}},
    };
    QCOMPARE(QJsonDocument::fromJson(m_client->get(control("/faults")).body).array(), expected);
    QCOMPARE(m_client->get(heartbeat()).error, QNetworkReply::ConnectionRefusedError);

    QCOMPARE(m_client->send("DELETE", control("/faults")).status, 200);
    QVERIFY(m_services->faults().rules().isEmpty());
    QCOMPARE(m_client->get(heartbeat()).status, 200);
}

void TestServicesControl::faultsNeverStrikeTheControlPath()
{
    m_services->addFault({Fault::Status, {}, {}, 503, false});
    m_services->addFault({Fault::Refuse, {}, {}, 0, false});
    QCOMPARE(m_client->get(control("/")).status, 200);
    QVERIFY(m_services->log().requests().isEmpty());
}

void TestServicesControl::sessionsAreForgotten_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::newRow("delete") << QByteArray("DELETE") << "/sessions";
    QTest::newRow("post") << QByteArray("POST") << "/sessions/forget";
}

void TestServicesControl::sessionsAreForgotten()
{
    QFETCH(const QByteArray, method);
    QFETCH(const QString, path);
    const QString companies = m_services->signInUrl() + "/rs/casLogin/listCompany";
    m_client->signIn(m_services->signInUrl(), "lina", "lina2024");
    QVERIFY(m_client->get(companies).isJson());
    QCOMPARE(m_client->send(method, control(path)).status, 200);
    QVERIFY(!m_client->get(companies).isJson());
}

void TestServicesControl::wrongPathsAndMethods()
{
    QCOMPARE(m_client->get(control("/sessions")).status, 405);
    QCOMPARE(m_client->send("PUT", control("/faults")).allow, QByteArray("GET, POST, DELETE"));
    QCOMPARE(m_client->get(control("/nothing")).status, 404);
}

QTEST_GUILESS_MAIN(TestServicesControl)
#include "test_services_control.moc"
