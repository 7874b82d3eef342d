#include "clients.h"

#include "tests/support/startedservices.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <vector>

using NelvoDevkit::Fault;
using NelvoDevkit::FaultRule;
using TestSupport::json;
using TestSupport::StartedServices;

namespace {

const QByteArray HeartbeatRequest = "GET /org/heartbeat HTTP/1.1\r\nHost: h\r\n\r\n";
const QByteArray HeartbeatBody = R"({"code":0,"data":{}})";

FaultRule rule(Fault fault, const QString& path = {}, int value = 0, bool once = false)
{
    return {fault, path, {}, value, once};
}

//! Sends one request that gets no reply and returns the error that ended the connection. Uses Boost, because
//! QTcpSocket cannot distinguish a reset from an orderly end.
boost::system::error_code endOfConnection(const QString& url)
{
    using boost::asio::ip::tcp;
    boost::asio::io_context context;
    tcp::socket socket(context);
    boost::system::error_code error;
    socket.connect({boost::asio::ip::address_v4::loopback(), static_cast<quint16>(QUrl(url).port())}, error);
    boost::asio::write(socket, boost::asio::buffer(HeartbeatRequest.toStdString()), error);
    char answer = 0;
    socket.read_some(boost::asio::buffer(&answer, 1), error);
    return error;
}

} // namespace

class TestServicesFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void ruleStrikesItsPathOnly();
    void ruleStrikesItsMethodOnly();
    void ruleThatStrikesOnce();
    void rulesAreMatchedInTheOrderAdded();
    void rulesAreListed();

    void refuseStrikesAtOnceWithoutAPath();
    void refuseStrikesTheServiceOfItsPath();
    void refuseEndsOtherConnections();
    void refuseBeforeStart();
    void refuseKeepsThePort();
    void resetResetsTheConnection();
    void stallWaitsForClear();
    void stallEndsWithStop();
    void delayAnswersLater();
    void delayEndsWithClear();
    void delayEndsWithStop();
    void cutBodyAnnouncesTheWholeBody();
    void statusAnswersWithIt();
    void notJsonIsNoJson();
    void wrongJsonIsOfTheOtherKind();
    void redirectLeadsToTheAnswer();
    void redirectKeepsTheQuery();
    void endlessRedirectDoesNotEnd();
    void loseSessionSignsTheClientOut();
    void loseSessionSetsTheEditorsCookiesAgain();
    void faultsStrikeCannedReplies();
    void faultsAreSafeFromSeveralThreads();

private:
    QString heartbeat() const { return m_services->editorUrl() + "/org/heartbeat"; }
    QString login() const { return m_services->signInUrl() + "/login"; }
    bool isRefused(const QString& url) const
    {
        return Client().get(url).error == QNetworkReply::ConnectionRefusedError;
    }
    //! Waits until the services have read `count` requests.
    bool waitForRequests(int count) const
    {
        return QTest::qWaitFor([this, count] { return m_services->log().requests().size() >= count; },
                               Patience);
    }

    std::unique_ptr<StartedServices> m_services;
};

void TestServicesFaults::init()
{
    m_services = std::make_unique<StartedServices>();
}

void TestServicesFaults::cleanup()
{
    m_services.reset();
}

void TestServicesFaults::ruleStrikesItsPathOnly()
{
    m_services->addFault(rule(Fault::Status, "/login", 503));
    Client client;
    QCOMPARE(client.get(login()).status, 503);
    QCOMPARE(client.get(login() + "?service=x").status, 503);
    QCOMPARE(client.get(login() + "x").status, 404);
    QCOMPARE(client.get(heartbeat()).status, 200);
}

void TestServicesFaults::ruleStrikesItsMethodOnly()
{
    m_services->addFault({Fault::Status, {}, "POST", 500, false});
    Client client;
    QCOMPARE(client.get(login()).status, 200);
    QCOMPARE(client.post(login(), "x").status, 500);
    QCOMPARE(client.post(heartbeat(), "x").status, 500);
}

void TestServicesFaults::ruleThatStrikesOnce()
{
    m_services->addFault(rule(Fault::Status, "/org/heartbeat", 503, true));
    Client client;
    QCOMPARE(client.get(login()).status, 200);
    QCOMPARE(client.get(heartbeat()).status, 503);
    QVERIFY(m_services->faults().rules().isEmpty());
    QCOMPARE(client.get(heartbeat()).status, 200);
}

void TestServicesFaults::rulesAreMatchedInTheOrderAdded()
{
    m_services->addFault(rule(Fault::Status, {}, 501, true));
    m_services->addFault(rule(Fault::Status, "/org/heartbeat", 502, true));
    m_services->addFault(rule(Fault::Status, {}, 503));
    Client client;
    QCOMPARE(client.get(heartbeat()).status, 501);
    QCOMPARE(client.get(login()).status, 503);
    QCOMPARE(client.get(heartbeat()).status, 502);
    QCOMPARE(client.get(heartbeat()).status, 503);
    m_services->clearFaults();
    QCOMPARE(client.get(heartbeat()).status, 200);
}

void TestServicesFaults::rulesAreListed()
{
    m_services->addFault(rule(Fault::Delay, "/a", 10));
    m_services->addFault({Fault::Reset, "/b", "PUT", 0, true});
    const QVector<FaultRule> rules = m_services->faults().rules();
    QCOMPARE(rules.size(), 2);
    QCOMPARE(rules[0].fault, Fault::Delay);
    QCOMPARE(rules[0].value, 10);
    QCOMPARE(rules[1].path, QString("/b"));
    QCOMPARE(rules[1].method, QByteArray("PUT"));
    QVERIFY(rules[1].once);
}

void TestServicesFaults::refuseStrikesAtOnceWithoutAPath()
{
    Client client;
    QCOMPARE(client.get(login()).status, 200);
    m_services->addFault(rule(Fault::Refuse));
    QVERIFY(isRefused(login()));
    QVERIFY(isRefused(heartbeat()));
    QCOMPARE(client.get(login()).error, QNetworkReply::ConnectionRefusedError);
    QCOMPARE(m_services->log().requests().size(), 1);

    m_services->clearFaults();
    QCOMPARE(client.get(login()).status, 200);
    QCOMPARE(client.get(heartbeat()).status, 200);
}

void TestServicesFaults::refuseStrikesTheServiceOfItsPath()
{
    m_services->addFault(rule(Fault::Refuse, "/org/heartbeat"));
    QVERIFY(!isRefused(m_services->editorUrl() + "/other"));

    QCOMPARE(endOfConnection(m_services->editorUrl()), make_error_code(boost::asio::error::eof));
    QVERIFY(isRefused(m_services->editorUrl() + "/other"));
    QCOMPARE(Client().get(login()).status, 200);

    m_services->clearFaults();
    QCOMPARE(Client().get(heartbeat()).body, HeartbeatBody);
}

void TestServicesFaults::refuseEndsOtherConnections()
{
    RawConnection bystander(m_services->editorUrl());
    bystander.send(HeartbeatRequest);
    QVERIFY(bystander.readAnswer().endsWith(HeartbeatBody));
    m_services->addFault(rule(Fault::Refuse, "/org/heartbeat", 0, true));
    RawConnection(m_services->editorUrl()).send(HeartbeatRequest);
    QCOMPARE(bystander.readToEnd(), QByteArray());
    QVERIFY(!bystander.isConnected());
    QVERIFY(isRefused(heartbeat()));
}

void TestServicesFaults::refuseBeforeStart()
{
    NelvoDevkit::Services services;
    services.addFault(rule(Fault::Refuse));
    QVERIFY(services.start());
    QVERIFY(isRefused(services.signInUrl()));
    services.clearFaults();
    QCOMPARE(Client().get(services.editorUrl() + "/org/heartbeat").status, 200);
}

void TestServicesFaults::refuseKeepsThePort()
{
    const QString before = m_services->signInUrl();
    for (int i = 0; i < 20; ++i) {
        m_services->addFault(rule(Fault::Refuse));
        QVERIFY(isRefused(login()));
        m_services->clearFaults();
        QCOMPARE(Client().get(login()).status, 200);
    }
    QCOMPARE(m_services->signInUrl(), before);
}

void TestServicesFaults::resetResetsTheConnection()
{
    m_services->addFault(rule(Fault::Reset, "/org/heartbeat", 0, true));
    QCOMPARE(endOfConnection(m_services->editorUrl()), make_error_code(boost::asio::error::connection_reset));
    QCOMPARE(m_services->log().requests().size(), 1);
    QCOMPARE(Client().get(heartbeat()).status, 200);
}

void TestServicesFaults::stallWaitsForClear()
{
    m_services->addFault(rule(Fault::Stall, "/org/heartbeat"));
    Client client;
    QNetworkReply* first = client.start("GET", heartbeat());
    QNetworkReply* second = client.start("GET", heartbeat());
    QVERIFY(waitForRequests(2));
    QCOMPARE(Client().get(login()).status, 200);
    QVERIFY(!first->isFinished());
    QVERIFY(!second->isFinished());

    m_services->clearFaults();
    QCOMPARE(Client::finish(first).body, HeartbeatBody);
    QCOMPARE(Client::finish(second).body, HeartbeatBody);
}

void TestServicesFaults::stallEndsWithStop()
{
    m_services->addFault(rule(Fault::Stall));
    std::vector<std::unique_ptr<RawConnection>> stalled;
    for (int i = 0; i < 5; ++i) {
        stalled.push_back(std::make_unique<RawConnection>(m_services->editorUrl()));
        stalled.back()->send(HeartbeatRequest);
    }
    QVERIFY(waitForRequests(5));
    m_services->stop();
    for (const auto& connection : stalled)
        QCOMPARE(connection->readToEnd(), QByteArray());
}

void TestServicesFaults::delayAnswersLater()
{
    m_services->addFault(rule(Fault::Delay, "/org/heartbeat", 300));
    QElapsedTimer timer;
    timer.start();
    const Answer answer = Client().get(heartbeat());
    QVERIFY(timer.elapsed() >= 300);
    QCOMPARE(answer.body, HeartbeatBody);
}

void TestServicesFaults::delayEndsWithClear()
{
    m_services->addFault(rule(Fault::Delay, {}, 60 * 60 * 1000));
    Client client;
    QNetworkReply* reply = client.start("GET", heartbeat());
    QVERIFY(waitForRequests(1));
    m_services->clearFaults();
    QCOMPARE(Client::finish(reply).body, HeartbeatBody);
}

void TestServicesFaults::delayEndsWithStop()
{
    m_services->addFault(rule(Fault::Delay, {}, 60 * 60 * 1000));
    RawConnection raw(m_services->signInUrl());
    raw.send("GET /login HTTP/1.1\r\nHost: h\r\n\r\n");
    QVERIFY(waitForRequests(1));
    m_services->stop();
    QCOMPARE(raw.readToEnd(), QByteArray());
}

void TestServicesFaults::cutBodyAnnouncesTheWholeBody()
{
    m_services->addFault(rule(Fault::CutBody, "/org/heartbeat"));
    RawConnection raw(m_services->editorUrl());
    raw.send(HeartbeatRequest);
    const QByteArray answer = raw.readToEnd();
    QVERIFY(answer.startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(answer.contains("\r\nContent-Length: 20\r\n"));
    QVERIFY(answer.endsWith("\r\n\r\n" + HeartbeatBody.left(10)));
    QCOMPARE(Client().get(heartbeat()).body, HeartbeatBody.left(10));
}

void TestServicesFaults::statusAnswersWithIt()
{
    for (const int status : {204, 401, 404, 500, 503}) {
        m_services->addFault(rule(Fault::Status, {}, status, true));
        const Answer answer = Client().get(heartbeat());
        QCOMPARE(answer.status, status);
        QCOMPARE(answer.body, status == 204 ? QByteArray() : QByteArray("simulated fault\n"));
    }
}

void TestServicesFaults::notJsonIsNoJson()
{
    m_services->addFault(rule(Fault::NotJson));
    const Answer answer = Client().get(heartbeat());
    QCOMPARE(answer.status, 200);
    QVERIFY(!answer.body.isEmpty());
    QVERIFY(!answer.isJson());
}

void TestServicesFaults::wrongJsonIsOfTheOtherKind()
{
    Client client;
    client.signIn(m_services->signInUrl(), "lina", "lina2024");
    m_services->addFault(rule(Fault::WrongJson));
    const Answer object = client.get(m_services->signInUrl() + "/rs/casLogin/listCompany");
    QCOMPARE(object.status, 200);
    QCOMPARE(object.contentType, QByteArray("application/json;charset=UTF-8"));
    QVERIFY(QJsonDocument::fromJson(object.body).isObject());
    QVERIFY(QJsonDocument::fromJson(client.get(heartbeat()).body).isArray());
    QVERIFY(QJsonDocument::fromJson(client.get(login()).body).isArray());
}

void TestServicesFaults::redirectLeadsToTheAnswer()
{
    m_services->addFault(rule(Fault::Redirect, "/org/heartbeat"));
    Client client;
    for (int i = 0; i < 2; ++i) {
        const Answer answer = client.get(heartbeat());
        QCOMPARE(answer.status, 200);
        QCOMPARE(answer.body, HeartbeatBody);
        QCOMPARE(answer.url.path(), QString("/org/heartbeat"));
    }

    client.setFollowRedirects(false);
    const Answer redirect = client.get(heartbeat());
    QCOMPARE(redirect.status, 302);
    QCOMPARE(redirect.location, QByteArray("/org/heartbeat?redirected=1"));
    QCOMPARE(client.get(m_services->editorUrl() + redirect.location).status, 200);
}

void TestServicesFaults::redirectKeepsTheQuery()
{
    m_services->addFault(rule(Fault::Redirect));
    const Answer answer = Client().get(heartbeat() + "?a=1&b=%20");
    QCOMPARE(answer.body, HeartbeatBody);
    QVERIFY(m_services->log().requests().last().target.startsWith("/org/heartbeat?a=1&b=%20&"));
}

void TestServicesFaults::endlessRedirectDoesNotEnd()
{
    m_services->addFault(rule(Fault::EndlessRedirect));
    QCOMPARE(Client().get(heartbeat() + "?x").error, QNetworkReply::TooManyRedirectsError);
    QVERIFY(m_services->log().requests().size() > 10);
    QCOMPARE(m_services->log().requests().last().target, QByteArray("/org/heartbeat?x"));
}

void TestServicesFaults::loseSessionSignsTheClientOut()
{
    Client client;
    client.signIn(m_services->signInUrl(), "lina", "lina2024");
    Client other;
    other.signIn(m_services->signInUrl(), "lina", "lina2024");
    const QString companies = m_services->signInUrl() + "/rs/casLogin/listCompany";
    QVERIFY(client.get(companies).isJson());

    m_services->addFault(rule(Fault::LoseSession, "/rs/casLogin/listCompany", 0, true));
    QCOMPARE(client.get(companies).url.path(), QString("/login"));
    QCOMPARE(client.get(companies).url.path(), QString("/login"));
    QVERIFY(other.get(companies).isJson());
}

void TestServicesFaults::loseSessionSetsTheEditorsCookiesAgain()
{
    Client client;
    client.get(heartbeat());
    const QByteArray session = client.cookie(heartbeat(), "EDITORSESSION");
    m_services->addFault(rule(Fault::LoseSession, {}, 0, true));
    client.get(heartbeat());
    const QByteArray renewed = client.cookie(heartbeat(), "EDITORSESSION");
    QVERIFY(renewed != session);
    client.get(heartbeat());
    QCOMPARE(client.cookie(heartbeat(), "EDITORSESSION"), renewed);
}

void TestServicesFaults::faultsStrikeCannedReplies()
{
    m_services->setReply("GET", "/org/heartbeat", json("[1,2,3,4]"));
    m_services->addFault(rule(Fault::WrongJson, {}, 0, true));
    m_services->addFault(rule(Fault::CutBody, {}, 0, true));
    QCOMPARE(Client().get(heartbeat()).body, QByteArray("{}"));
    RawConnection raw(m_services->editorUrl());
    raw.send(HeartbeatRequest);
    QVERIFY(raw.readToEnd().endsWith("\r\n\r\n[1,2"));
}

void TestServicesFaults::faultsAreSafeFromSeveralThreads()
{
    // The test adds and removes rules during requests. Afterwards the services work normally.
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back(QThread::create([this] {
            for (int n = 0; n < 30; ++n) {
                RawConnection raw(m_services->editorUrl());
                raw.send(HeartbeatRequest);
                raw.readAnswer();
            }
        }));
        threads.back()->start();
    }
    const auto running = [&threads] {
        return std::any_of(threads.begin(), threads.end(),
                           [](const auto& thread) { return thread->isRunning(); });
    };
    while (running()) {
        m_services->addFault(rule(Fault::Refuse, "/org/heartbeat"));
        m_services->clearFaults();
        m_services->addFault(rule(Fault::Stall));
        m_services->addFault(rule(Fault::Refuse));
        m_services->clearFaults();
        m_services->log().clear();
    }
    QCOMPARE(Client().get(heartbeat()).body, HeartbeatBody);
    QCOMPARE(Client().get(login()).status, 200);
}

QTEST_GUILESS_MAIN(TestServicesFaults)
#include "test_services_faults.moc"
