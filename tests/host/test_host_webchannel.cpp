#include "host/webchannelserver.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QWebChannelAbstractTransport>
#include <QWebSocket>
#include <QtTest>

#include <memory>

using NelvoDevkit::WebChannelServer;

namespace {

constexpr int Patience = 30000;

//! Sends a GET request and returns the status and the body of the reply.
std::pair<int, QByteArray> get(const QUrl& url)
{
    QNetworkAccessManager manager;
    const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!finished.wait(Patience))
        return {0, "no end"};
    return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), reply->readAll()};
}

//! \brief A client of the web channel. It only sends and receives messages.
class ChannelClient : public QObject
{
    Q_OBJECT

public:
    explicit ChannelClient(const QUrl& url)
    {
        connect(&m_socket, &QWebSocket::textMessageReceived, this,
                [this](const QString& text) { m_messages.append(text); });
        m_socket.open(url);
    }

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void close() { m_socket.close(); }
    void send(const QByteArray& text) { m_socket.sendTextMessage(QString::fromUtf8(text)); }
    int messageCount() const { return m_messages.size(); }
    QJsonObject lastMessage() const { return QJsonDocument::fromJson(m_messages.last().toUtf8()).object(); }
    //! The names of the objects in the last message, which must be the reply to an "init".
    QStringList objects() const { return lastMessage()["data"].toObject().keys(); }

private:
    QWebSocket m_socket;
    QStringList m_messages;
};

constexpr char Init[] = R"({"type": 3, "id": 5})";

//! \brief An object with a function that counts its calls.
class Counter : public QObject
{
    Q_OBJECT

public:
    int calls = 0;

    Q_INVOKABLE void call() { ++calls; }
};

} // namespace

class TestHostWebChannel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addressesAreEmptyBeforeTheStart();
    void handshakeTellsTheObjects();
    void handshakeOfSeveralClients();
    void messageReachesItsObject();
    void nonsenseIsIgnored();
    void clientComesAndGoes();
    void destructionEndsTheConnections();
    void pageIsServed();

private:
    static std::unique_ptr<WebChannelServer> started();
};

std::unique_ptr<WebChannelServer> TestHostWebChannel::started()
{
    auto server = std::make_unique<WebChannelServer>();
    QString error;
    if (!server->start(&error))
        qFatal("%s", qPrintable(error));
    return server;
}

void TestHostWebChannel::addressesAreEmptyBeforeTheStart()
{
    WebChannelServer server;
    QVERIFY(server.channel() != nullptr);
    QVERIFY(server.pageUrl().isEmpty());
    QVERIFY(server.socketUrl().isEmpty());
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    QCOMPARE(server.pageUrl().host(), QString("127.0.0.1"));
    QCOMPARE(server.socketUrl().host(), QString("127.0.0.1"));
    QVERIFY(server.pageUrl().port() != server.socketUrl().port());
}

void TestHostWebChannel::handshakeTellsTheObjects()
{
    const auto server = started();
    QObject early;
    QObject late;
    server->channel()->registerObject("bimObject", &early);
    ChannelClient client(server->socketUrl());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), Patience);
    client.send(Init);
    QTRY_COMPARE_WITH_TIMEOUT(client.messageCount(), 1, Patience);
    QCOMPARE(client.lastMessage()["type"].toInt(), 10);
    QCOMPARE(client.lastMessage()["id"].toInt(), 5);
    QCOMPARE(client.objects(), QStringList("bimObject"));

    server->channel()->registerObject("another", &late);
    client.send(Init);
    QTRY_COMPARE_WITH_TIMEOUT(client.messageCount(), 2, Patience);
    QCOMPARE(client.objects(), (QStringList{"another", "bimObject"}));
}

void TestHostWebChannel::handshakeOfSeveralClients()
{
    const auto server = started();
    QObject object;
    server->channel()->registerObject("bimObject", &object);
    ChannelClient first(server->socketUrl());
    ChannelClient second(server->socketUrl());
    QTRY_VERIFY_WITH_TIMEOUT(first.isConnected() && second.isConnected(), Patience);
    second.send(Init);
    QTRY_COMPARE_WITH_TIMEOUT(second.messageCount(), 1, Patience);
    first.send(Init);
    QTRY_COMPARE_WITH_TIMEOUT(first.messageCount(), 1, Patience);
    QCOMPARE(first.objects(), second.objects());
    QCOMPARE(second.messageCount(), 1);
}

void TestHostWebChannel::messageReachesItsObject()
{
    const auto server = started();
    Counter counter;
    server->channel()->registerObject("counter", &counter);
    ChannelClient client(server->socketUrl());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), Patience);
    client.send(R"({"type": 6, "object": "counter", "method": "call", "args": [], "id": 1})");
    QTRY_COMPARE_WITH_TIMEOUT(counter.calls, 1, Patience);
}

void TestHostWebChannel::nonsenseIsIgnored()
{
    const auto server = started();
    ChannelClient client(server->socketUrl());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), Patience);
    client.send("no JSON");
    client.send("[3]");
    client.send(Init);
    QTRY_COMPARE_WITH_TIMEOUT(client.messageCount(), 1, Patience);
    QVERIFY(client.objects().isEmpty());
    QVERIFY(client.isConnected());
}

void TestHostWebChannel::clientComesAndGoes()
{
    const auto server = started();
    QObject object;
    server->channel()->registerObject("bimObject", &object);
    const auto transports = [&] {
        return server->channel()->findChildren<QWebChannelAbstractTransport*>().size();
    };
    for (int n = 0; n < 3; ++n) {
        ChannelClient client(server->socketUrl());
        QTRY_COMPARE_WITH_TIMEOUT(transports(), 1, Patience);
        QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), Patience);
        client.close();
        QTRY_COMPARE_WITH_TIMEOUT(transports(), 0, Patience);
    }
    ChannelClient client(server->socketUrl());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), Patience);
    client.send(Init);
    QTRY_COMPARE_WITH_TIMEOUT(client.messageCount(), 1, Patience);
}

void TestHostWebChannel::destructionEndsTheConnections()
{
    auto server = started();
    const QUrl page = server->pageUrl();
    ChannelClient client(server->socketUrl());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), Patience);
    client.send(Init);
    QTRY_COMPARE_WITH_TIMEOUT(client.messageCount(), 1, Patience);
    server.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!client.isConnected(), Patience);
    QCOMPARE(get(page).first, 0);
}

void TestHostWebChannel::pageIsServed()
{
    const auto server = started();
    const auto page = get(server->pageUrl());
    QCOMPARE(page.first, 200);
    QVERIFY(page.second.contains('"' + server->socketUrl().toEncoded() + '"'));
    QVERIFY(!page.second.contains("{{"));
    const auto script = get(server->pageUrl().resolved(QUrl("qwebchannel.js")));
    QCOMPARE(script.first, 200);
    QVERIFY(script.second.contains("QWebChannel"));
    QCOMPARE(get(server->pageUrl().resolved(QUrl("other"))).first, 404);
}

QTEST_GUILESS_MAIN(TestHostWebChannel)
#include "test_host_webchannel.moc"
