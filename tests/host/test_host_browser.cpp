#include "host/webchannelserver.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QWebSocket>
#include <QtTest>

#include <memory>

using NelvoDevkit::WebChannelServer;

namespace {

constexpr int patience = 30000;

QString browserProgram()
{
    return QStandardPaths::findExecutable("chromium");
}

} // namespace

//! \brief A headless Chromium with one page, looked into by its debugging protocol. That way a test waits
//! for what the page shows, where a dump of the page comes as early as the browser likes.
class Browser
{
public:
    ~Browser();

    //! Opens the page and returns once it can be looked into, or tells why it can't.
    bool open(const QUrl& url);
    QString error() const { return m_error + QString::fromLocal8Bit(m_log); }
    //! The page as it stands now.
    QString dom();

private:
    bool start(const QUrl& url);
    bool attach(const QUrl& url);
    //! Where the page's debugging protocol is spoken; empty until the browser has the page.
    QUrl pageSocket(const QUrl& url);
    QUrl pageList();
    bool fail(const QString& reason);

    QTemporaryDir m_profile;
    QProcess m_process;
    QByteArray m_log;
    QWebSocket m_socket;
    QString m_error;
    int m_lastId = 0;
};

Browser::~Browser()
{
    m_socket.abort();
    m_process.terminate();
    if (!m_process.waitForFinished(patience)) {
        m_process.kill();
        m_process.waitForFinished(patience);
    }
    // Its helper processes may still be writing there for a moment.
    if (!QTest::qWaitFor([this] { return m_profile.remove(); }, patience))
        qWarning("%s stays behind", qPrintable(m_profile.path()));
}

bool Browser::open(const QUrl& url)
{
    return start(url) && attach(url);
}

bool Browser::start(const QUrl& url)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", m_profile.path()); // so that all it writes goes with the profile
    m_process.setProcessEnvironment(environment);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.start(browserProgram(),
                    {"--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--no-first-run", "--no-proxy-server", "--disable-background-networking",
                     "--disable-component-update", "--user-data-dir=" + m_profile.path(),
                     "--remote-debugging-port=0", url.toString()});
    return m_process.waitForStarted(patience) || fail("Chromium does not start");
}

bool Browser::attach(const QUrl& url)
{
    QUrl page;
    if (!QTest::qWaitFor([&] { return !(page = pageSocket(url)).isEmpty(); }, patience))
        return fail("Chromium does not show the page");
    m_socket.open(page);
    const auto isConnected = [&] { return m_socket.state() == QAbstractSocket::ConnectedState; };
    return QTest::qWaitFor(isConnected, patience) || fail("Chromium does not let anyone look");
}

QUrl Browser::pageSocket(const QUrl& url)
{
    const QUrl list = pageList();
    if (list.isEmpty())
        return {};
    QNetworkAccessManager manager;
    const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(list)));
    QSignalSpy(reply.get(), &QNetworkReply::finished).wait(patience);
    const QJsonArray targets = QJsonDocument::fromJson(reply->readAll()).array();
    for (const QJsonValue& target : targets) {
        if (target["url"].toString() == url.toString())
            return target["webSocketDebuggerUrl"].toString();
    }
    return {};
}

//! Chromium chooses a port and says which one.
QUrl Browser::pageList()
{
    m_log += m_process.readAllStandardError();
    static const QRegularExpression announcement("DevTools listening on ws://(127\\.0\\.0\\.1:\\d+)/");
    const auto match = announcement.match(QString::fromLocal8Bit(m_log));
    return match.hasMatch() ? QUrl("http://" + match.captured(1) + "/json/list") : QUrl();
}

bool Browser::fail(const QString& reason)
{
    m_error = reason + "\n";
    return false;
}

QString Browser::dom()
{
    const int id = ++m_lastId;
    QSignalSpy answers(&m_socket, &QWebSocket::textMessageReceived);
    const QJsonObject order{{"id", id},
                            {"method", "Runtime.evaluate"},
                            {"params", QJsonObject{{"expression", "document.documentElement.outerHTML"}}}};
    m_socket.sendTextMessage(QJsonDocument(order).toJson());
    if (answers.isEmpty() && !answers.wait(patience))
        return {};
    const QJsonDocument answer = QJsonDocument::fromJson(answers.first().first().toString().toUtf8());
    return answer["id"].toInt() == id ? answer["result"]["result"]["value"].toString() : QString();
}

//! \brief The web channel's page in a real browser.
class TestHostBrowser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void object_isFound();
    void object_isMissing();
    void connection_isLost();

private:
    std::unique_ptr<WebChannelServer> m_server;
    std::unique_ptr<Browser> m_browser;
};

void TestHostBrowser::initTestCase()
{
    if (browserProgram().isEmpty())
        QSKIP("There is no chromium on the PATH; the Debian package of that name has it.");
}

void TestHostBrowser::init()
{
    m_server = std::make_unique<WebChannelServer>();
    m_browser = std::make_unique<Browser>();
    QString error;
    QVERIFY2(m_server->start(&error), qPrintable(error));
}

void TestHostBrowser::cleanup()
{
    m_browser.reset();
    m_server.reset();
}

void TestHostBrowser::object_isFound()
{
    QObject object;
    QObject other;
    m_server->channel()->registerObject("bimObject", &object);
    m_server->channel()->registerObject("<other>", &other);
    QVERIFY2(m_browser->open(m_server->pageUrl()), qPrintable(m_browser->error()));
    QTRY_VERIFY_WITH_TIMEOUT(m_browser->dom().contains("class=\"found\">bimObject found</p>"), patience);
    QVERIFY(m_browser->dom().contains("<li>&lt;other&gt;</li><li>bimObject</li>"));
}

void TestHostBrowser::object_isMissing()
{
    QObject other;
    m_server->channel()->registerObject("other", &other);
    QVERIFY2(m_browser->open(m_server->pageUrl()), qPrintable(m_browser->error()));
    QTRY_VERIFY_WITH_TIMEOUT(m_browser->dom().contains("class=\"missing\">bimObject not found</p>"),
                             patience);
    QVERIFY(m_browser->dom().contains("<li>other</li>"));
}

void TestHostBrowser::connection_isLost()
{
    QVERIFY2(m_browser->open(m_server->pageUrl()), qPrintable(m_browser->error()));
    QTRY_VERIFY_WITH_TIMEOUT(m_browser->dom().contains("not found"), patience);
    m_server.reset();
    QTRY_VERIFY_WITH_TIMEOUT(m_browser->dom().contains("class=\"missing\">no connection</p>"), patience);
}

QTEST_GUILESS_MAIN(TestHostBrowser)
#include "test_host_browser.moc"
