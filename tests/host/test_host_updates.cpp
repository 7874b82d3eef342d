#include "host/updatedesk.h"

#include "tests/support/updaterstandin.h"

#include <QQmlContext>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using NelvoDevkit::LogEntry;
using NelvoDevkit::LogModel;
using NelvoDevkit::OperationQueue;
using NelvoDevkit::UpdateDesk;
using TestSupport::UpdaterStandIn;
using State = NelvoDevkit::UpdateDesk::State;

namespace {

constexpr int Patience = 30000;

const auto LoginPage = QStringLiteral("LoginComp.qml");
const auto OfferPage = QStringLiteral("UpdateComp.qml");
const auto DownloadPage = QStringLiteral("DownloadComp.qml");
const auto CoverPage = QStringLiteral("CoverComp.qml");
const auto LastPage = QStringLiteral("ValidComp.qml");

} // namespace

//! The host's part of the self-update.
class TestHostUpdates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void withoutAnUpdaterNothingIsChecked();
    void withoutAServiceNothingIsChecked();
    void checkIsAnOrder();
    void checkWaitsForItsOutcome();
    void offer();
    void nothingNewer();
    void installedVersionFollows();
    void downloadHasItsProgress();
    void progressOfAnUnknownSize();
    void completePackageIsNotFetched();
    void failureIsToldOnceMore();
    void refusedDownloadGoesOn();
    void installation();
    void nothingHappensOutOfTurn();
    void everythingIsLogged();

    void unseenPageGoes();
    void shownPagesAreFollowed();
    void lastPageNeedsTheFormBack_data();
    void lastPageNeedsTheFormBack();
    void signInThatIsUnderWayGoesOn();

private:
    void check();
    void offerRelease();
    void showLogin();
    void turnTo(const QString& page) const;
    QStringList logged(LogEntry::Kind kind) const;

    QTemporaryDir m_pages;
    std::unique_ptr<QQuickView> m_window;
    std::unique_ptr<UpdaterStandIn> m_updater;
    std::unique_ptr<LogModel> m_log;
    std::unique_ptr<OperationQueue> m_queue;
    std::unique_ptr<UpdateDesk> m_desk;
};

void TestHostUpdates::initTestCase()
{
    const auto write = [this](const QString& name, const QByteArray& content) {
        QFile file(m_pages.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    };
    write(QStringLiteral("Main.qml"),
          "import QtQuick 2.15\nItem { width: 90; height: 90\n"
          "Loader { objectName: \"contentLoader\"; source: \"LoginComp.qml\" } }\n");
    for (const QString& page : {LoginPage, OfferPage, DownloadPage, CoverPage, LastPage})
        write(page, "import QtQuick 2.15\nItem {}\n");
}

void TestHostUpdates::init()
{
    m_updater = std::make_unique<UpdaterStandIn>();
    m_updater->setProperty("localVersion", QStringLiteral("1.0.0"));
    m_updater->setProperty("latestVersion", QStringLiteral("1.0.1"));
    m_updater->setProperty("changeLog", QStringLiteral("first<br/>second"));
    m_window = std::make_unique<QQuickView>();
    m_window->rootContext()->setContextProperty(QStringLiteral("updater"), m_updater.get());
    m_log = std::make_unique<LogModel>();
    m_queue = std::make_unique<OperationQueue>();
    m_desk = std::make_unique<UpdateDesk>(*m_log, *m_queue);
    m_desk->setService({"http://update", "the token", "the product"});
}

void TestHostUpdates::cleanup()
{
    m_desk.reset();
    m_queue.reset();
    m_log.reset();
    m_window.reset();
    m_updater.reset();
}

void TestHostUpdates::check()
{
    m_updater->clearCalls();
    m_desk->check();
    QTRY_COMPARE_WITH_TIMEOUT(m_updater->calls().size(), 1, Patience);
    m_updater->clearCalls();
}

void TestHostUpdates::offerRelease()
{
    check();
    Q_EMIT m_updater->needUpdate(true);
}

void TestHostUpdates::showLogin()
{
    m_window->setSource(QUrl::fromLocalFile(m_pages.filePath(QStringLiteral("Main.qml"))));
    QVERIFY(m_window->rootObject());
    m_window->show();
}

void TestHostUpdates::turnTo(const QString& page) const
{
    auto* const loader = m_window->rootObject()->findChild<QObject*>(QStringLiteral("contentLoader"));
    QVERIFY(loader);
    loader->setProperty("source", QUrl::fromLocalFile(m_pages.filePath(page)));
    QCoreApplication::processEvents();
}

QStringList TestHostUpdates::logged(LogEntry::Kind kind) const
{
    QCoreApplication::processEvents();
    QStringList lines;
    for (int row = 0; row < m_log->rowCount(); ++row) {
        if (m_log->entry(row).kind == kind)
            lines.append(m_log->entry(row).text);
    }
    return lines;
}

void TestHostUpdates::withoutAnUpdaterNothingIsChecked()
{
    m_window.reset();
    UpdateDesk desk(*m_log, *m_queue);
    desk.setService({"http://update", "the token", "the product"});
    QVERIFY(!desk.canCheck());
    desk.check();
    QVERIFY(!m_queue->isBusy());
    QCOMPARE(desk.state(), State::Idle);
    QCOMPARE(desk.installedVersion(), QString());
}

void TestHostUpdates::withoutAServiceNothingIsChecked()
{
    QVERIFY(m_desk->canCheck());
    QSignalSpy changed(m_desk.get(), &UpdateDesk::changed);
    m_desk->setService({});
    QCOMPARE(changed.size(), 1);
    QVERIFY(!m_desk->canCheck());
    m_desk->check();
    QVERIFY(!m_queue->isBusy());
}

void TestHostUpdates::checkIsAnOrder()
{
    m_desk->check();
    QVERIFY(m_queue->isBusy());
    QVERIFY(m_updater->calls().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(m_updater->calls(),
                              QStringList("checkVersion http://update the token the product"), Patience);
}

void TestHostUpdates::checkWaitsForItsOutcome()
{
    m_desk->check();
    QCOMPARE(m_desk->state(), State::Checking);
    QVERIFY(!m_desk->canCheck());
    m_desk->check();
    QTRY_VERIFY_WITH_TIMEOUT(!m_queue->isBusy(), Patience);
    QCOMPARE(m_updater->calls().size(), 1);
}

void TestHostUpdates::offer()
{
    offerRelease();
    QCOMPARE(m_desk->state(), State::Offered);
    QCOMPARE(m_desk->version(), QStringLiteral("1.0.1"));
    QCOMPARE(m_desk->changeLog(), QStringLiteral("first<br/>second"));
    QCOMPARE(m_desk->installedVersion(), QStringLiteral("1.0.0"));
    QVERIFY(m_desk->canCheck());
    m_desk->dismiss();
    QCOMPARE(m_desk->state(), State::Idle);
    QVERIFY(m_updater->calls().isEmpty());
}

void TestHostUpdates::nothingNewer()
{
    check();
    Q_EMIT m_updater->needUpdate(false);
    QCOMPARE(m_desk->state(), State::NothingNewer);
    QVERIFY(m_desk->canCheck());
    m_desk->dismiss();
    QCOMPARE(m_desk->state(), State::Idle);
}

void TestHostUpdates::installedVersionFollows()
{
    QSignalSpy changed(m_desk.get(), &UpdateDesk::changed);
    m_updater->setProperty("localVersion", QStringLiteral("1.2"));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(m_desk->installedVersion(), QStringLiteral("1.2"));
}

void TestHostUpdates::downloadHasItsProgress()
{
    offerRelease();
    m_desk->download();
    QCOMPARE(m_updater->calls(), QStringList("download"));
    QCOMPARE(m_desk->state(), State::Downloading);
    Q_EMIT m_updater->downloadStarted(QStringLiteral("p.zip"), 400);
    QCOMPARE(m_desk->bytesTotal(), qint64(400));
    QCOMPARE(m_desk->progress(), 0.0);
    Q_EMIT m_updater->downloadProgress(QStringLiteral("p.zip"), 100, 400);
    QCOMPARE(m_desk->bytesReceived(), qint64(100));
    QCOMPARE(m_desk->progress(), 0.25);
    Q_EMIT m_updater->downloadProgress(QStringLiteral("p.zip"), 400, 400);
    QCOMPARE(m_desk->progress(), 1.0);
    QCOMPARE(m_desk->state(), State::Downloading); // the checksum has not been checked yet
    Q_EMIT m_updater->downloadFinished(QStringLiteral("p.zip"));
    QCOMPARE(m_desk->state(), State::Downloaded);
    m_desk->dismiss();
    QCOMPARE(m_desk->state(), State::Downloaded);
}

void TestHostUpdates::progressOfAnUnknownSize()
{
    offerRelease();
    m_desk->download();
    Q_EMIT m_updater->downloadProgress(QStringLiteral("p.zip"), 100, 0);
    QCOMPARE(m_desk->progress(), 0.0);
    Q_EMIT m_updater->downloadProgress(QStringLiteral("p.zip"), 100, 50);
    QCOMPARE(m_desk->progress(), 1.0);
}

//! An earlier process has downloaded the package, so the updater only emits downloadFinished.
void TestHostUpdates::completePackageIsNotFetched()
{
    offerRelease();
    m_desk->download();
    Q_EMIT m_updater->downloadFinished(QStringLiteral("p.zip"));
    QCOMPARE(m_desk->state(), State::Downloaded);
    QCOMPARE(m_desk->progress(), 1.0);
}

void TestHostUpdates::failureIsToldOnceMore()
{
    offerRelease();
    m_desk->download();
    Q_EMIT m_updater->downloadProgress(QStringLiteral("p.zip"), 100, 400);
    Q_EMIT m_updater->readyUpdateInfo(QStringLiteral("下载失败: refused"));
    Q_EMIT m_updater->readyUpdateInfo(QStringLiteral("下载失败: closed"));
    QCOMPARE(m_desk->state(), State::Failed);
    QCOMPARE(m_desk->error(), QStringLiteral("下载失败: closed"));
    m_updater->clearCalls();
    m_desk->download();
    QCOMPARE(m_updater->calls(), QStringList("download"));
    QCOMPARE(m_desk->state(), State::Downloading);
    QCOMPARE(m_desk->error(), QString());
    QCOMPARE(m_desk->progress(), 0.0);
    Q_EMIT m_updater->readyUpdateError(QStringLiteral("once more"));
    QCOMPARE(m_desk->error(), QStringLiteral("once more"));
    m_desk->dismiss();
    QCOMPARE(m_desk->state(), State::Idle);
    QCOMPARE(m_desk->error(), QString());
}

//! The updater refuses the download while an earlier transfer is running.
void TestHostUpdates::refusedDownloadGoesOn()
{
    offerRelease();
    m_desk->download();
    Q_EMIT m_updater->readyUpdateInfo(QStringLiteral("download already exist: p.zip"));
    QCOMPARE(m_desk->state(), State::Failed);
    Q_EMIT m_updater->downloadProgress(QStringLiteral("p.zip"), 100, 400);
    QCOMPARE(m_desk->state(), State::Downloading);
    QCOMPARE(m_desk->error(), QString());
}

void TestHostUpdates::installation()
{
    offerRelease();
    m_desk->download();
    Q_EMIT m_updater->downloadFinished(QStringLiteral("p.zip"));
    m_updater->clearCalls();
    m_desk->install();
    QCOMPARE(m_updater->calls(), QStringList("upgrade"));
    Q_EMIT m_updater->upgradeStart();
    QCOMPARE(m_desk->state(), State::Installing);
    QCOMPARE(m_desk->progress(), 0.0);
    QVERIFY(!m_desk->canCheck());
    Q_EMIT m_updater->upgradeProcess(0.5F);
    QCOMPARE(m_desk->progress(), 0.5);
    Q_EMIT m_updater->readyUpdateInfo(QStringLiteral("restarting"));
    QCOMPARE(m_desk->state(), State::Installing);
    QCOMPARE(m_desk->message(), QStringLiteral("restarting"));
    Q_EMIT m_updater->upgradeProcess(1);
    Q_EMIT m_updater->upgradeEnd();
    QCOMPARE(m_desk->state(), State::Restarting);
    QCOMPARE(m_desk->progress(), 1.0);
    QVERIFY(!m_desk->canCheck());
}

void TestHostUpdates::nothingHappensOutOfTurn()
{
    m_desk->download();
    m_desk->install();
    offerRelease();
    m_desk->install();
    QVERIFY(m_updater->calls().isEmpty());
    m_desk->download();
    m_desk->download();
    m_desk->install();
    QCOMPARE(m_updater->calls(), QStringList("download"));
}

void TestHostUpdates::everythingIsLogged()
{
    offerRelease();
    m_desk->download();
    Q_EMIT m_updater->downloadStarted(QStringLiteral("p.zip"), 400);
    Q_EMIT m_updater->downloadFinished(QStringLiteral("p.zip"));
    m_desk->install();
    Q_EMIT m_updater->upgradeStart();
    Q_EMIT m_updater->readyUpdateInfo(QStringLiteral("restarting"));
    Q_EMIT m_updater->upgradeEnd();
    QCOMPARE(logged(LogEntry::Kind::Host),
             (QStringList{"updater.checkVersion: \"the product\" at http://update", "updater.download",
                          "updater.upgrade"}));
    QCOMPARE(logged(LogEntry::Kind::Observer),
             (QStringList{"updater: needUpdate: true, version \"1.0.1\"", "updater: downloadStarted: p.zip",
                          "updater: downloadFinished: p.zip", "updater: upgradeStart",
                          "updater: readyUpdateInfo: restarting", "updater: upgradeEnd"}));
}

//! The host unloads the hidden page, which would treat the result of the check as a step of a sign-in.
void TestHostUpdates::unseenPageGoes()
{
    showLogin();
    m_window->close();
    check();
    QVERIFY(!m_window->rootObject());
}

void TestHostUpdates::shownPagesAreFollowed()
{
    showLogin();
    offerRelease();
    turnTo(OfferPage);
    QVERIFY(m_updater->calls().isEmpty());
    turnTo(DownloadPage);
    QCOMPARE(m_updater->calls(), QStringList("download"));
    Q_EMIT m_updater->downloadFinished(QStringLiteral("p.zip"));
    turnTo(CoverPage);
    QCOMPARE(m_updater->calls(), (QStringList{"download", "upgrade"}));
}

void TestHostUpdates::lastPageNeedsTheFormBack_data()
{
    QTest::addColumn<bool>("need");
    QTest::addColumn<State>("state");
    QTest::newRow("nothing newer") << false << State::NothingNewer;
    QTest::newRow("skipped") << true << State::Idle;
}

void TestHostUpdates::lastPageNeedsTheFormBack()
{
    QFETCH(bool, need);
    QFETCH(State, state);
    showLogin();
    check();
    QSignalSpy needed(m_desk.get(), &UpdateDesk::loginFormNeeded);
    Q_EMIT m_updater->needUpdate(need);
    if (need)
        turnTo(OfferPage);
    QVERIFY(needed.isEmpty());
    turnTo(LastPage);
    QCOMPARE(needed.size(), 1);
    QCOMPARE(m_desk->state(), state);
    // Later page changes are part of a sign-in.
    turnTo(LoginPage);
    turnTo(LastPage);
    QCOMPARE(needed.size(), 1);
}

void TestHostUpdates::signInThatIsUnderWayGoesOn()
{
    showLogin();
    check();
    QSignalSpy needed(m_desk.get(), &UpdateDesk::loginFormNeeded);
    turnTo(LastPage);
    Q_EMIT m_updater->needUpdate(true);
    turnTo(OfferPage);
    turnTo(LastPage);
    QVERIFY(needed.isEmpty());
}

QTEST_MAIN(TestHostUpdates)
#include "test_host_updates.moc"
