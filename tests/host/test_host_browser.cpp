#include "host/chromium.h"
#include "host/webchannelserver.h"

#include <QtTest>

#include <memory>

using NelvoDevkit::Chromium;
using NelvoDevkit::WebChannelServer;

namespace {

constexpr int patience = 30000;

} // namespace

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
    std::unique_ptr<Chromium> m_browser;
};

void TestHostBrowser::initTestCase()
{
    if (!Chromium::isInstalled())
        QSKIP("There is no chromium on the PATH; the Debian package of that name has it.");
}

void TestHostBrowser::init()
{
    m_server = std::make_unique<WebChannelServer>();
    m_browser = std::make_unique<Chromium>();
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
