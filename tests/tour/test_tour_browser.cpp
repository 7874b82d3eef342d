#include "host/webchannelserver.h"
#include "tour/chromium.h"

#include <QtTest>

#include <memory>

using NelvoDevkit::Chromium;
using NelvoDevkit::WebChannelServer;

namespace {

constexpr int Patience = 30000;

} // namespace

//! \brief The web channel's page in a real browser.
class TestTourBrowser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void objectIsFound();
    void objectIsMissing();
    void connectionIsLost();

private:
    std::unique_ptr<WebChannelServer> m_server;
    std::unique_ptr<Chromium> m_browser;
};

void TestTourBrowser::initTestCase()
{
    if (!Chromium::isInstalled())
        QSKIP("all functions here need the browser: install Debian's package chromium");
}

void TestTourBrowser::init()
{
    m_server = std::make_unique<WebChannelServer>();
    m_browser = std::make_unique<Chromium>();
    QString error;
    QVERIFY2(m_server->start(&error), qPrintable(error));
}

void TestTourBrowser::cleanup()
{
    m_browser.reset();
    m_server.reset();
}

void TestTourBrowser::objectIsFound()
{
    QObject object;
    QObject other;
    m_server->channel()->registerObject("bimObject", &object);
    m_server->channel()->registerObject("<other>", &other);
    QVERIFY2(m_browser->open(m_server->pageUrl()), qPrintable(m_browser->error()));
    QTRY_VERIFY_WITH_TIMEOUT(m_browser->dom().contains("class=\"found\">bimObject found</p>"), Patience);
    QVERIFY(m_browser->dom().contains("<li>&lt;other&gt;</li><li>bimObject</li>"));
}

void TestTourBrowser::objectIsMissing()
{
    QObject other;
    m_server->channel()->registerObject("other", &other);
    QVERIFY2(m_browser->open(m_server->pageUrl()), qPrintable(m_browser->error()));
    QTRY_VERIFY_WITH_TIMEOUT(m_browser->dom().contains("class=\"missing\">bimObject not found</p>"),
                             Patience);
    QVERIFY(m_browser->dom().contains("<li>other</li>"));
}

void TestTourBrowser::connectionIsLost()
{
    QVERIFY2(m_browser->open(m_server->pageUrl()), qPrintable(m_browser->error()));
    QTRY_VERIFY_WITH_TIMEOUT(m_browser->dom().contains("not found"), Patience);
    m_server.reset();
    QTRY_VERIFY_WITH_TIMEOUT(m_browser->dom().contains("class=\"missing\">no connection</p>"), Patience);
}

QTEST_GUILESS_MAIN(TestTourBrowser)
#include "test_tour_browser.moc"
