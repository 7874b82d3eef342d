#include "tests/support/files.h"
#include "tests/updater/batchfile.h"
#include "tests/updater/installation.h"
#include "tests/updater/releaseserver.h"
#include "tests/updater/ziparchive.h"

#include <QDir>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

using TestSupport::contentOf;

namespace {

constexpr int Patience = Installation::Patience;

const auto Farewell = QStringLiteral("稍后将自动重启,请等待");

} // namespace

class TestCover : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void wholeUpdate();
    void stateFileNamesWhatWasInstalled();
    void pageSeesTheEndForTwoSeconds();
    void settingsAreCommittedFirst();
    void invalidConfigurationIsLeftAlone();
    void versionIsCommittedBeforeTheState();
    void stateIsWrittenOnlyOnce();
    void historyGrowsInUtf8();
    void coverGoesOnWithoutAHistory();
    void batchFileIsStarted();
    void batchFileReplacesTheInstallation();
    void blankInThePathKeepsTheBatchFileFromStarting();
    void missingBatchResourceGivesAnEmptyBatchFile();
    void unwritableBatchFileDoesNotKeepTheHost();
    void packageWithoutEntriesCovers();
    void packageWithAnEntryThatEndsEarlyCovers();
    void damagedPackageLeavesTheHostRunning();

    void killedInTheDownloadItIsContinued();
    void killedBehindTheChecksumItSkipsTheTransfer();
    void killedInTheUnpackItIsUnpackedAnew();
    void killedInTheCoverTheVersionStands();
    void killedBehindTheCommitmentNothingIsUnderWay();
    void killedBatchFileIsNotContinued();

private:
    QStringList updateArguments(const QString& step = QStringLiteral("download")) const
    {
        return m_server.arguments(step);
    }

    ReleaseServer m_server;
};

void TestCover::init()
{
    m_server.reset();
}

void TestCover::wholeUpdate()
{
    Installation host(QStringLiteral(UPDATEHOST));
    QVERIFY(host.run(updateArguments()));
    const QString found = host.events().value(0).mid(QStringLiteral("log 4 > ").size());
    QCOMPARE(
        host.orderedEvents(),
        (QStringList{"log 4 > " + found, "info " + found, "latestVersionChanged", "changeLogChanged",
                     "needUpdate 1", "downloadStarted", "log 1 request finished with code 206",
                     "log 4 > 下载完成，校验MD5", "log 4 > 校验通过", "downloadFinished", "log 4 > 解压中",
                     "upgradeStart", "log 4 > 解压完成,开始升级", "log 4 > " + Farewell, "info " + Farewell,
                     "upgradeProcess 1", "upgradeEnd", "timers 0", "left with 1.0.1"}));
    const QString before = QStringLiteral("settings= config=1.0.0 history=0 state=%1 batch=0");
    QCOMPARE(host.recordsAt("needUpdate"), before.arg(0));
    QCOMPARE(host.recordsAt("downloadStarted"), before.arg(1));
    QCOMPARE(host.recordsAt("log 4 > 解压完成"), before.arg(2));
    const QString committed = QStringLiteral("settings=1.0.1 config=1.0.1 history=1 state=0 batch=0");
    QCOMPARE(host.recordsAt("info " + Farewell), committed);
    QCOMPARE(host.recordsAt("upgradeEnd"), committed);
    QCOMPARE(host.recordsAt("timers 0"), committed); // one second before the batch file is written
    QCOMPARE(host.recordsAt("left"), QStringLiteral("settings=1.0.1 config=1.0.1 history=1 state=0 batch=1"));

    QCOMPARE(host.content("updateConfig.json"),
             QByteArray("{\n    \"other\": true,\n    \"version\": \"1.0.1\"\n}\n"));
    QCOMPARE(host.json("NelvoUpdateState.dat"), (QJsonObject{{"updateState", 0},
                                                             {"fullMd5", m_server.md5()},
                                                             {"remarks", "first<br/>second"},
                                                             {"pVersion", "1.0.1"}}));
    QCOMPARE(host.settingsVersion(), QStringLiteral("1.0.1"));
    const QRegularExpression history(QStringLiteral("^\n\r版本:1.0.1\n\r更新时间:\\d{4}-\\d\\d-\\d\\d_\\d\\d-"
                                                    "\\d\\d-\\d\\d\n\r更新说明:\n\rfirst<br/>second$"));
    const QString written = QString::fromUtf8(host.content("NelvoUpdateLog.txt"));
    QVERIFY2(history.match(written).hasMatch(), qPrintable(written));
    const QByteArray batch = contentOf(QStringLiteral(":/NelvoPlugin/Login/cover.bat"));
    QVERIFY(!batch.isEmpty());
    QCOMPARE(host.content("cover.bat"), batch);
    QCOMPARE(host.content("NelvoUpdate/NelvoEditor.zip"), m_server.package());
    QCOMPARE(host.content("NelvoUnCompress/NelvoEditor.exe"), QByteArray(200000, 'x'));
    QCOMPARE(host.content("NelvoUnCompress/qml/Main.qml"), QByteArray("Item {}"));
    // The batch file would delete this file of the package, but it does not run here.
    QCOMPARE(host.content("NelvoUnCompress/updateConfig.json"), QByteArray(R"({"version": "9.9"})"));
}

void TestCover::stateFileNamesWhatWasInstalled()
{
    Installation host(QStringLiteral(UPDATEHOST));
    host.writeState(2);
    // No check ran in this process, so there is no latest version.
    QVERIFY(host.run({"cover"}));
    QCOMPARE(host.events().constLast(), QStringLiteral("left with 1.0.1"));
    QCOMPARE(host.configVersion(), QStringLiteral("1.0.1"));
    QCOMPARE(host.json("NelvoUpdateState.dat"),
             (QJsonObject{
                 {"updateState", 0}, {"fullMd5", "abc"}, {"remarks", "first<br/>second"}, {"pVersion", ""}}));
    const QByteArray history = host.content("NelvoUpdateLog.txt");
    QVERIFY(history.startsWith("\n\r版本:\n\r"));
    QVERIFY(history.endsWith("\n\rfirst<br/>second"));
}

void TestCover::pageSeesTheEndForTwoSeconds()
{
    Installation host(QStringLiteral(UPDATEHOST));
    QVERIFY(host.run({"cover"}));
    const QStringList shown = host.events().filter(QRegularExpression("^shown "));
    QCOMPARE(shown.size(), 1);
    // A coarse timer of two seconds may fire 5 % early.
    QVERIFY2(shown[0].section(' ', 1, 1).toInt() >= 1900, qPrintable(shown[0]));
    QVERIFY2(shown[0].section(' ', 2, 2).toInt() > 0, qPrintable(shown[0]));
    QCOMPARE(host.events().filter("upgradeProcess"), QStringList{"upgradeProcess 1"});
}

void TestCover::settingsAreCommittedFirst()
{
    Installation host(QStringLiteral(UPDATEHOST));
    host.writeState(2);
    QVERIFY(QFile::remove(host.path("updateConfig.json")));
    QVERIFY(host.run({"cover"}));
    // The missing file is logged at the start and in doCover. The state at the second line shows what doCover
    // has recorded by then.
    const QString missing = QStringLiteral("log 1 open file  %1 failed").arg(host.path("updateConfig.json"));
    QCOMPARE(host.events().filter(missing).size(), 2);
    QCOMPARE(host.recordsAt(missing), QStringLiteral("settings=1.0.1 config= history=0 state=2 batch=0"));
    QVERIFY(!host.exists("updateConfig.json"));
    QVERIFY(host.run({"version"}));
    QCOMPARE(host.events().constLast(), QStringLiteral("left with 1.0.1"));
}

void TestCover::invalidConfigurationIsLeftAlone()
{
    Installation host(QStringLiteral(UPDATEHOST));
    host.writeState(2);
    host.write("updateConfig.json", "{\"version\": ");
    QVERIFY(host.run({"cover"}));
    QCOMPARE(host.content("updateConfig.json"), QByteArray("{\"version\": "));
    QCOMPARE(host.events().filter("log 1 parse json failed: ").size(), 2);
    QCOMPARE(host.settingsVersion(), QStringLiteral("1.0.1"));
    QCOMPARE(host.state(), 0);
}

void TestCover::versionIsCommittedBeforeTheState()
{
    Installation host(QStringLiteral(UPDATEHOST));
    host.writeState(2);
    // A pipe without a reader blocks doCover at the history, after the version and before the state.
    if (!makeFifo(host.path("NelvoUpdateLog.txt")))
        QSKIP("stops the host at a named pipe in its directory; Windows keeps named pipes elsewhere");
    host.start({"cover"});
    QTRY_COMPARE_WITH_TIMEOUT(host.configVersion(), QStringLiteral("1.0.1"), Patience);
    QCOMPARE(host.settingsVersion(), QStringLiteral("1.0.1"));
    QCOMPARE(host.state(), 2);
    QFile history(host.path("NelvoUpdateLog.txt"));
    QVERIFY(history.open(QIODevice::ReadOnly));
    QTRY_COMPARE_WITH_TIMEOUT(host.state(), 0, Patience);
    host.kill();
}

void TestCover::stateIsWrittenOnlyOnce()
{
    Installation host(QStringLiteral(UPDATEHOST));
    host.writeState(2);
    host.start({"cover"});
    QVERIFY(host.reaches(QStringLiteral("upgradeEnd")));
    QCOMPARE(host.json("NelvoUpdateState.dat").value("updateState").toInt(-1), 0);
    host.write("NelvoUpdateState.dat", "changed meanwhile");
    QVERIFY(host.reaches(QStringLiteral("left with 1.0.1")));
    QCOMPARE(host.content("NelvoUpdateState.dat"), QByteArray("changed meanwhile"));
    QVERIFY(host.ends());
}

void TestCover::historyGrowsInUtf8()
{
    qputenv("NELVO_TEST_CODEC", "GBK");
    const auto restored = qScopeGuard([] { qunsetenv("NELVO_TEST_CODEC"); });
    Installation host(QStringLiteral(UPDATEHOST));
    host.write("NelvoUpdateState.dat", R"({"pVersion": "1.0.1", "remarks": "更快"})");
    host.write("NelvoUpdateLog.txt", "what was there");
    QVERIFY(host.run({"cover"}));
    const QByteArray history = host.content("NelvoUpdateLog.txt");
    QVERIFY2(history.startsWith("what was there\n\r版本:"), history.constData());
    QVERIFY2(history.endsWith("更新说明:\n\r更快"), history.constData());
}

void TestCover::coverGoesOnWithoutAHistory()
{
    Installation host(QStringLiteral(UPDATEHOST));
    host.writeState(2);
    QVERIFY(QDir().mkpath(host.path("NelvoUpdateLog.txt")));
    QVERIFY(host.run({"cover"}));
    QVERIFY(host.events().filter("log 1 ").isEmpty());
    QCOMPARE(host.state(), 0);
    QVERIFY(host.exists("cover.bat"));
}

void TestCover::batchFileIsStarted()
{
    Installation host(QStringLiteral(UPDATEHOST_RUNNABLE), Installation::WithoutBlank);
    const BatchFile batch(host, host.path("cover.bat"));
    host.makeBatchFileStartable();
    QVERIFY(host.run({"cover"}));
    QTRY_COMPARE_WITH_TIMEOUT(batch.trace(), QByteArray("started with 0 arguments\n"), Patience);
}

void TestCover::batchFileReplacesTheInstallation()
{
    const QByteArray program = contentOf(QStringLiteral(UPDATEHOST_RUNNABLE));
    ZipArchive archive;
    archive.add("first.txt", "new");
    archive.add("NelvoEditor.exe", program);
    archive.add("NelvoUpdateLog.txt", "the package's");
    archive.add("qml/Main.qml", "Item {}");
    archive.add("updateConfig.json", R"({"version": "9.9"})");
    m_server.offer(archive.bytes());
    Installation host(QStringLiteral(UPDATEHOST_RUNNABLE), Installation::WithoutBlank);
    const BatchFile batch(host, host.path("cover.bat"));
    host.makeBatchFileStartable();
    host.write("first.txt", "old");
    host.write("kept.txt", "old");
    QVERIFY(host.run(updateArguments()));
    QTRY_VERIFY_WITH_TIMEOUT(!host.exists("cover.bat"), Patience);
    QTRY_COMPARE_WITH_TIMEOUT(batch.trace(), QByteArray("started with 0 arguments\n"), Patience);
    QVERIFY(!host.exists("NelvoUnCompress"));
    QCOMPARE(host.content("first.txt"), QByteArray("new"));
    QCOMPARE(host.content("kept.txt"), QByteArray("old"));
    QCOMPARE(host.content("qml/Main.qml"), QByteArray("Item {}"));
    QVERIFY(host.content("NelvoEditor.exe") == program);
    QCOMPARE(host.configVersion(), QStringLiteral("1.0.1"));
    QVERIFY(host.content("NelvoUpdateLog.txt").contains("1.0.1"));
    QCOMPARE(host.state(), 0);

    // The new host checks for the next release and finds none.
    QVERIFY(host.run(updateArguments(QStringLiteral("check"))));
    QCOMPARE(host.events(), (QStringList{"needUpdate 0", "left with 1.0.1"}));
}

void TestCover::blankInThePathKeepsTheBatchFileFromStarting()
{
    Installation host(QStringLiteral(UPDATEHOST_RUNNABLE), QStringLiteral("with blank"));
    const BatchFile batch(host, host.path("cover.bat"));
    host.makeBatchFileStartable();
    // The updater starts the part of the path before the blank as the program.
    const QString before = host.root() + QStringLiteral("/" BEFORE_BLANK_NAME);
    QVERIFY(QFile::copy(QStringLiteral(BEFORE_BLANK), before));
    QVERIFY(QFile::setPermissions(before, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(host.run({"cover"}));
    QTRY_COMPARE_WITH_TIMEOUT(contentOf(before + QStringLiteral(".started")),
                              QByteArray("started with 1 arguments\n"), Patience);
    QCOMPARE(batch.trace(), QByteArray());
    QCOMPARE(host.content("cover.bat"), contentOf(QStringLiteral(BATCH_FILE)));
}

void TestCover::missingBatchResourceGivesAnEmptyBatchFile()
{
    Installation host(QStringLiteral(UPDATEHOST_BARE));
    host.write("cover.bat", "an earlier one");
    QVERIFY(host.run({"cover"}));
    QCOMPARE(host.events().filter("log 1 open file  :/NelvoPlugin/Login/cover.bat failed: ").size(), 1);
    QVERIFY(host.exists("cover.bat"));
    QCOMPARE(host.content("cover.bat"), QByteArray());
}

void TestCover::unwritableBatchFileDoesNotKeepTheHost()
{
    Installation host(QStringLiteral(UPDATEHOST));
    QVERIFY(QDir().mkpath(host.path("cover.bat")));
    QVERIFY(host.run({"cover"}));
    QCOMPARE(host.events()
                 .filter(QStringLiteral("log 1 open file  %1 failed: ").arg(host.path("cover.bat")))
                 .size(),
             1);
}

void TestCover::packageWithoutEntriesCovers()
{
    m_server.offer(ZipArchive().bytes());
    Installation host(QStringLiteral(UPDATEHOST));
    QVERIFY(host.run(updateArguments()));
    QVERIFY(QFileInfo(host.path("NelvoUnCompress")).isDir());
    QVERIFY(QDir(host.path("NelvoUnCompress")).isEmpty());
    QCOMPARE(host.settingsVersion(), QStringLiteral("1.0.1"));
    QVERIFY(host.exists("cover.bat"));
}

//! If the unpacking did not end, the host would not end either.
void TestCover::packageWithAnEntryThatEndsEarlyCovers()
{
    ZipArchive package;
    package.add({"cut", "data", false, false, ZipArchive::Entry::Damage::None, "BZh9"});
    package.add("whole", "1");
    m_server.offer(package.bytes());
    Installation host(QStringLiteral(UPDATEHOST));
    QVERIFY(host.run(updateArguments()));
    QVERIFY(host.exists("NelvoUnCompress/cut"));
    QCOMPARE(host.content("NelvoUnCompress/whole"), QByteArray("1"));
    QCOMPARE(host.settingsVersion(), QStringLiteral("1.0.1"));
}

void TestCover::damagedPackageLeavesTheHostRunning()
{
    m_server.offer("no zip at all");
    Installation host(QStringLiteral(UPDATEHOST));
    host.start(updateArguments());
    QVERIFY(host.reaches(QStringLiteral("log 4 > 解压失败")));
    // The progress continues, because it measures time.
    QVERIFY(host.reaches(QStringLiteral("upgradeProcess 0.05")));
    QVERIFY(host.runs());
    QVERIFY(!host.exists("NelvoUnCompress"));
    QVERIFY(!host.exists("cover.bat"));
    QCOMPARE(host.state(), 2);
    QCOMPARE(host.configVersion(), QStringLiteral("1.0.0"));
    host.kill();
}

void TestCover::killedInTheDownloadItIsContinued()
{
    m_server.stallAfter(70000);
    Installation host(QStringLiteral(UPDATEHOST));
    host.start(updateArguments());
    QTRY_COMPARE_WITH_TIMEOUT(host.content("NelvoUpdate/NelvoEditor.zip").size(), 70000, Patience);
    host.kill();
    QCOMPARE(host.state(), 1);

    m_server.deliver();
    QVERIFY(host.run(updateArguments()));
    QCOMPARE(m_server.ranges(), (QByteArrayList{"bytes=0-", "bytes=70000-"}));
    QCOMPARE(host.events().constLast(), QStringLiteral("left with 1.0.1"));
    QCOMPARE(host.content("NelvoUnCompress/NelvoEditor.exe"), QByteArray(200000, 'x'));
}

void TestCover::killedBehindTheChecksumItSkipsTheTransfer()
{
    Installation host(QStringLiteral(UPDATEHOST));
    // A file in place of the directory makes the first unpacking fail.
    host.write("NelvoUnCompress", "in the way");
    host.start(updateArguments());
    QVERIFY(host.reaches(QStringLiteral("log 4 > 解压失败")));
    host.kill();
    QCOMPARE(host.state(), 2);

    QVERIFY(host.run(updateArguments()));
    QCOMPARE(m_server.ranges(), QByteArrayList{"bytes=0-"});
    QVERIFY(!host.events().contains("downloadStarted"));
    QVERIFY(host.events().contains(QStringLiteral("log 4 > 校验通过")));
    QCOMPARE(host.events().constLast(), QStringLiteral("left with 1.0.1"));
}

void TestCover::killedInTheUnpackItIsUnpackedAnew()
{
    ZipArchive archive;
    archive.add("first", "1");
    archive.add("../held", "2");
    archive.add("last", "3");
    m_server.offer(archive.bytes());
    Installation host(QStringLiteral(UPDATEHOST));
    // A pipe without a reader blocks the unpacking at its second entry.
    if (!makeFifo(host.path("held")))
        QSKIP("stops the host at a named pipe in its directory; Windows keeps named pipes elsewhere");
    host.start(updateArguments());
    QTRY_VERIFY_WITH_TIMEOUT(host.exists("NelvoUnCompress/first"), Patience);
    host.kill();
    QCOMPARE(host.state(), 2);
    QVERIFY(!host.exists("NelvoUnCompress/last"));
    QCOMPARE(host.configVersion(), QStringLiteral("1.0.0"));

    QVERIFY(QFile::remove(host.path("held")));
    host.write("NelvoUnCompress/left over", "");
    QVERIFY(host.run(updateArguments()));
    QCOMPARE(m_server.ranges(), QByteArrayList{"bytes=0-"});
    QCOMPARE(host.content("NelvoUnCompress/last"), QByteArray("3"));
    QVERIFY(!host.exists("NelvoUnCompress/left over"));
}

void TestCover::killedInTheCoverTheVersionStands()
{
    Installation host(QStringLiteral(UPDATEHOST));
    if (!makeFifo(host.path("NelvoUpdateLog.txt")))
        QSKIP("stops the host at a named pipe in its directory; Windows keeps named pipes elsewhere");
    host.start(updateArguments());
    QTRY_COMPARE_WITH_TIMEOUT(host.configVersion(), QStringLiteral("1.0.1"), Patience);
    host.kill();
    QVERIFY(!host.exists("cover.bat"));
    QCOMPARE(host.settingsVersion(), QStringLiteral("1.0.1"));
    QCOMPARE(host.state(), 2);
    // The files are still the old ones, but the check finds no update.
    QVERIFY(host.run(updateArguments(QStringLiteral("check"))));
    QCOMPARE(host.events(), (QStringList{"needUpdate 0", "left with 1.0.1"}));
    QCOMPARE(host.state(), 2);
}

void TestCover::killedBehindTheCommitmentNothingIsUnderWay()
{
    Installation host(QStringLiteral(UPDATEHOST));
    host.start(updateArguments());
    QVERIFY(host.reaches(QStringLiteral("upgradeEnd")));
    host.kill();
    QCOMPARE(host.state(), 0);
    QVERIFY(host.exists("NelvoUnCompress/NelvoEditor.exe"));
    QVERIFY(host.run(updateArguments(QStringLiteral("check"))));
    QCOMPARE(host.events(), (QStringList{"needUpdate 0", "left with 1.0.1"}));
}

void TestCover::killedBatchFileIsNotContinued()
{
    const QStringList names{"first.txt", "second.txt", "third.txt"};
    ZipArchive archive;
    for (const QString& name : names)
        archive.add(name.toLatin1(), "new");
    m_server.offer(archive.bytes());
    Installation host(QStringLiteral(UPDATEHOST_RUNNABLE), Installation::WithoutBlank);
    const BatchFile batch(host, host.path("cover.bat"));
    host.makeBatchFileStartable();
    for (const QString& name : names)
        host.write(name, "old");
    QVERIFY(batch.hold());
    QVERIFY(host.run(updateArguments()));
    QTRY_VERIFY_WITH_TIMEOUT(batch.isHeld(), Patience);
    QVERIFY(batch.kill());
    QCOMPARE(host.content("first.txt"), QByteArray("new"));
    QVERIFY(host.content("second.txt") != "new");
    QCOMPARE(host.content("third.txt"), QByteArray("old"));

    // The recorded version is the new one, so no later check repairs the mixed installation.
    m_server.clearRequests();
    QVERIFY(host.run(updateArguments(QStringLiteral("check"))));
    QCOMPARE(host.events(), (QStringList{"needUpdate 0", "left with 1.0.1"}));
    QCOMPARE(host.state(), 0);
    QVERIFY(host.content("second.txt") != "new");
    QCOMPARE(host.content("third.txt"), QByteArray("old"));
    for (const char* name : {"NelvoUnCompress/second.txt", "NelvoUnCompress/third.txt"})
        QCOMPARE(host.content(name), QByteArray("new"));

    // The update to the next release downloads its own package and removes the unpacked files of this one.
    batch.letGo();
    ZipArchive next;
    next.add("first.txt", "newer");
    m_server.offer(next.bytes(), QStringLiteral("1.0.2"));
    QVERIFY(host.run(updateArguments()));
    QCOMPARE(m_server.ranges(), QByteArrayList{"bytes=0-"});
    QTRY_VERIFY_WITH_TIMEOUT(!host.exists("NelvoUnCompress"), Patience);
    QCOMPARE(host.content("first.txt"), QByteArray("newer"));
    QCOMPARE(host.content("third.txt"), QByteArray("old"));
    QCOMPARE(host.configVersion(), QStringLiteral("1.0.2"));
}

QTEST_GUILESS_MAIN(TestCover)
#include "test_cover.moc"
