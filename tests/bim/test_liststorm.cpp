#include "bim/bimprojworker.h"
#include "project/projectinfomgr.h"
#include "web/cookiesjar.h"
#include "web/webclient.h"

#include "tests/bim/modelservice.h"
#include "tests/support/messagelog.h"

#include <QJsonObject>
#include <QThread>
#include <QtTest>

using NelvoPlugin::CBimProjWorker;
using NelvoPlugin::CProjectInfoMgr;

namespace {

constexpr int Fetches = 5000;
constexpr int Calls = 5000;
const auto HeartbeatPath = QStringLiteral("/org/heartbeat");

//! Sends a timer event, as the manager's watch does.
void tick(CProjectInfoMgr& manager)
{
    QTimerEvent event(0);
    QCoreApplication::sendEvent(&manager, &event);
}

} // namespace

//! A worker thread fetches lists while the GUI thread makes calls and runs the watch. The service sets two
//! cookies in each reply.
class TestListStorm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fetchesBesideCalls_data();
    void fetchesBesideCalls();

private:
    ModelService m_services;
};

void TestListStorm::fetchesBesideCalls_data()
{
    QTest::addColumn<bool>("replacesTheJar");
    QTest::newRow("calls") << false;
    QTest::newRow("calls and replacements of the jar") << true;
}

void TestListStorm::fetchesBesideCalls()
{
    QFETCH(bool, replacesTheJar);
    m_services.reset();
    const QVector<NelvoDevkit::HttpHeader> twoCookies{{"Set-Cookie", "first=1; path=/"},
                                                      {"Set-Cookie", "second=2; path=/"}};
    for (const QString& path : {BimPath, HeartbeatPath, QStringLiteral("/org/tree")})
        m_services.setReply("GET", path, {200, "application/json", "{}", twoCookies});
    sharedCookieJar()->setAllCookies({});
    NelvoSDK::LoginSession session;
    session.sdkAddr = m_services.editorUrl().toStdWString();
    CProjectInfoMgr manager;
    manager.ReflushProjOrgInfo(session);

    QThread thread;
    CBimProjWorker worker;
    worker.moveToThread(&thread);
    int lists = 0;
    const auto fetch = [&worker] { QMetaObject::invokeMethod(&worker, &CBimProjWorker::getBimProjList); };
    connect(&worker, &CBimProjWorker::sigSyncBimProjList, this, [&](const QJsonArray&, bool success) {
        QVERIFY(success);
        if (++lists < Fetches)
            fetch();
    });
    const TestSupport::MessageLog log;
    thread.start();
    fetch();
    int failures = 0;
    for (int call = 0; call < Calls; ++call) {
        QJsonObject object;
        if (!httpGetJson(sharedNetworkManager(), m_services.editorUrl(), HeartbeatPath, {}, object))
            ++failures;
        if (call % 10 == 0)
            tick(manager);
        if (replacesTheJar)
            sharedCookieJar()->setAllCookies(sharedCookieJar()->allCookies().mid(0, call % 3));
    }
    constexpr int patienceMilliseconds = 600000;
    QTRY_COMPARE_WITH_TIMEOUT(lists, Fetches, patienceMilliseconds);
    thread.quit();
    QVERIFY(thread.wait(60000));

    QCOMPARE(failures, 0);
    QVERIFY2(log.warnings().isEmpty(), qPrintable(log.warnings().mid(0, 5).join(QLatin1Char('\n'))));
    QCOMPARE(sharedCookieJar()->allCookies().size(), 2);
    QVERIFY(m_services.targets().size() >= Fetches + Calls);
}

QTEST_GUILESS_MAIN(TestListStorm)
#include "test_liststorm.moc"
