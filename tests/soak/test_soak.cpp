#include "bench/processmemory.h"
#include "tests/bim/pdsstandins.h"
#include "tests/e2e/bimscene.h"
#include "tests/e2e/pluginhost.h"
#include "tests/e2e/updatepages.h"
#include "tests/soak/processcounts.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "tests/updater/ziparchive.h"

#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <QCoreApplication>
#include <QDir>
#include <QScopeGuard>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QTimerEvent>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

constexpr int Patience = 60000;
const auto User = QStringLiteral("zhangwei");
const auto PackageName = QStringLiteral("package.zip");
const auto Product = QStringLiteral("nelvo-editor");

} // namespace

//! Repeated use of the library: the memory that each step leaves, and no remaining handle or thread.
class TestSoak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void signInsAndSignOuts();
    void ticksOfTheWatch();
    void initializeAndShutdown();
    void openedDialogs();
    void updatesUpToTheCover();

private:
    using Step = std::function<void()>;
    void start();
    //! Runs a tenth of the steps first, as a warm-up. Afterwards no step may leave more than `mostKilobytes`.
    void soak(int times, double mostKilobytes, const Step& step);

    std::unique_ptr<TestSupport::StartedServices> m_services;
    std::unique_ptr<E2e::PluginHost> m_host;
};

void TestSoak::init()
{
    m_services = std::make_unique<TestSupport::StartedServices>();
}

void TestSoak::cleanup()
{
    m_host.reset();
    m_services.reset();
}

void TestSoak::start()
{
    m_host = std::make_unique<E2e::PluginHost>(m_services->signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
}

void TestSoak::soak(int times, double mostKilobytes, const Step& step)
{
    constexpr double kilobyte = 1024;
    constexpr int slack = 4; // connections of Qt and of the simulator that are closing
    const auto repeat = [&](int count) {
        for (int i = 0; i < count && !QTest::currentTestFailed(); ++i) {
            const TestSupport::MessageLog log; // one log for all steps would grow
            step();
            m_services->log().clear();
        }
    };
    repeat(times / 10);
    const double memory = Bench::ownBytes();
    const int handles = Soak::openHandles();
    const int threads = Soak::threads();
    repeat(times);
    const double perStep = (Bench::ownBytes() - memory) / times / kilobyte;
    qInfo("%.1f kB a step, %+d handles, %+d threads", perStep, Soak::openHandles() - handles,
          Soak::threads() - threads);
    QVERIFY(perStep < mostKilobytes);
    QTRY_VERIFY(Soak::openHandles() <= handles + slack);
    QTRY_VERIFY(Soak::threads() <= threads + slack);
}

void TestSoak::signInsAndSignOuts()
{
    start();
    soak(1000, 80, [this] {
        QVERIFY(m_host->signIn(m_services->signInUrl(), User).loggedIn);
        QMetaObject::invokeMethod(m_host->loginCtrl(), "logout");
        m_host->observer.sessions.clear();
        m_host->observer.calls.clear();
    });
}

void TestSoak::ticksOfTheWatch()
{
    start();
    NelvoSDK::IProjectInfoMgr* const projects = E2e::plugin()->GetProjectInfoMgr();
    projects->SetPlugin(E2e::plugin());
    projects->ReflushProjOrgInfo(m_host->signIn(m_services->signInUrl(), User));
    soak(10000, 10, [projects] {
        QTimerEvent tick(0);
        QCoreApplication::sendEvent(dynamic_cast<QObject*>(projects), &tick);
    });
}

void TestSoak::initializeAndShutdown()
{
    soak(1000, 8, [this] {
        start();
        m_host.reset();
    });
}

void TestSoak::openedDialogs()
{
    start();
    NelvoSDK::IProjectInfoMgr* const projects = E2e::plugin()->GetProjectInfoMgr();
    projects->SetPlugin(E2e::plugin());
    projects->ReflushProjOrgInfo(m_host->signIn(m_services->signInUrl(), User));
    E2e::ImportControl control;
    E2e::BimScene scene(control);
    QVERIFY(scene.show());
    NelvoSDK::IPdsMgr* const models = E2e::plugin()->GetPdsMgr();
    PdsObserver observer;
    models->Attach(&observer);
    soak(200, 20, [&] {
        observer.calls.clear();
        observer.dialogs.clear();
        observer.visualParents.clear();
        models->OpenBimDialog();
        QTRY_VERIFY(observer.calls.contains(QStringLiteral("synced")));
        QTRY_VERIFY(scene.rowCount() > 0);
        scene.clickPart(QStringLiteral("closeButton"));
        QTRY_VERIFY(!scene.isDialogShown());
    });
    models->Detach(&observer);
}

//! Each release is newer than the version that the previous one recorded.
void TestSoak::updatesUpToTheCover()
{
    ZipArchive archive;
    archive.add("NelvoEditor", QByteArray("a part of the editor\n").repeated(10000));
    m_services->packages().add(PackageName, archive.bytes());
    const TestSupport::ApplicationFile state(QStringLiteral("NelvoUpdateState.dat"));
    const TestSupport::ApplicationFile history(QStringLiteral("NelvoUpdateLog.txt"));
    const TestSupport::ApplicationFile batch(QStringLiteral("cover.bat"));
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    const auto removeDirectories = qScopeGuard([] {
        for (const char* directory : {"/NelvoUpdate", "/NelvoUnCompress"})
            QDir(QCoreApplication::applicationDirPath() + QLatin1String(directory)).removeRecursively();
    });
    start();
    int release = 0;
    soak(100, 20, [&] {
        const auto version = QStringLiteral("1.0.%1").arg(++release);
        m_services->updates().setRelease(
            Product, m_services->packageRelease(PackageName, version, QStringLiteral("notes")));
        batch.remove();
        const QSignalSpy finished(E2e::updater(), SIGNAL(downloadFinished(QString)));
        E2e::checkVersion(m_services->updateUrl(), m_services->updates().token(), Product);
        QVERIFY(E2e::callUpdater("download"));
        QTRY_VERIFY_WITH_TIMEOUT(!finished.isEmpty(), Patience);
        QVERIFY(E2e::callUpdater("upgrade"));
        QTimer::singleShot(Patience, &finished, &QCoreApplication::quit);
        QCoreApplication::exec(); // until the updater asks the application to quit
        QVERIFY(batch.exists());
        QCOMPARE(E2e::updater()->property("localVersion").toString(), version);
    });
}

E2E_MAIN(TestSoak)
#include "test_soak.moc"
