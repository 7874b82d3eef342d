#include "tests/updater/batchfile.h"
#include "tests/updater/installation.h"
#include "tests/updater/releaseserver.h"
#include "tests/updater/ziparchive.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

namespace {

constexpr int Patience = Installation::Patience;

const auto Farewell = QStringLiteral("稍后将自动重启,请等待");

//! Without the plug-in's address and the line numbers of its pages.
QStringList withoutPlaces(QStringList events)
{
    events.replaceInStrings(QRegularExpression("\\(0x[0-9a-f]+\\)"), QString());
    events.replaceInStrings(QRegularExpression("\\.qml:\\d+:"), ".qml:");
    return events;
}

//! The error of the page's own call, without source locations.
QString scriptError(const char* page, const char* call)
{
    return QStringLiteral("log 1 qrc:/NelvoPlugin/qmls/BizComp/%1.qml: TypeError: Property '%2' of object "
                          "NelvoPlugin::CLoginActor is not a function")
        .arg(QLatin1String(page), QLatin1String(call));
}

//! Installs the replacement of the batch file beside the installation, if the system needs it. Returns the
//! path of the running file.
QString installCover(const Installation& host)
{
    const auto script = QStringLiteral(COVER_SCRIPT);
    if (script.isEmpty())
        return host.path("cover.bat");
    QString starter = host.root() + QStringLiteral("/with");
    if (!QFile::copy(script, starter) ||
        !QFile::setPermissions(starter, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        qFatal("cannot install the script");
    return starter;
}

} // namespace

//! A whole update through the built library, in a separate host with its own directory, which is killed and
//! started again.
class TestE2eUpdateRestart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void wholeUpdate();
    void updateGoesOnOverEveryKill();
    void batchFileStartsOnceTheHostIsDone();

private:
    ReleaseServer m_server;
};

void TestE2eUpdateRestart::init()
{
    m_server.reset();
}

void TestE2eUpdateRestart::wholeUpdate()
{
    Installation host(QStringLiteral(UPDATEHOST));
    QVERIFY2(host.run(m_server.arguments("update")), host.output().constData());
    const QStringList events = withoutPlaces(host.orderedEvents());
    const QString package = host.path("NelvoUpdate/NelvoEditor.zip");
    const QString found = events.filter(QRegularExpression("^info ")).value(0).mid(5);
    QVERIFY2(found.endsWith("1.0.1"), qPrintable(found));
    const int from = events.indexOf("log 4 > " + found);
    const int end = events.indexOf("upgradeEnd");
    QCOMPARE(events.mid(from, end - from), (QStringList{
                                               "log 4 > " + found,
                                               "info " + found,
                                               "needUpdate 1",
                                               scriptError("UpdateComp", "download"),
                                               "log 0 qml onDownloadStarted " + package,
                                               "downloadStarted",
                                               "log 1 request finished with code 206",
                                               "log 4 > 下载完成，校验MD5",
                                               "log 4 > 校验通过",
                                               "log 0 qml onDownloadFinished " + package,
                                               "downloadFinished",
                                               scriptError("DownloadComp", "upgrade"),
                                               "log 4 > 解压中",
                                               "upgradeStart",
                                               "log 4 > 解压完成,开始升级",
                                               "log 4 > " + Farewell,
                                               "info " + Farewell,
                                               "upgradeProcess 1",
                                               "bar at 1",
                                           }));
    QCOMPARE(events.constLast(), QStringLiteral("left with 1.0.1"));
    QCOMPARE(host.recordsAt("needUpdate"), QStringLiteral("updateComp"));
    QCOMPARE(host.recordsAt("downloadStarted"), QStringLiteral("downloadComp"));
    QCOMPARE(host.recordsAt("downloadFinished"), QStringLiteral("downloadComp"));
    QCOMPARE(host.recordsAt("upgradeStart"), QStringLiteral("coverComp"));
    QCOMPARE(host.recordsAt("upgradeEnd"), QStringLiteral("coverComp"));

    QCOMPARE(host.json("updateConfig.json"), (QJsonObject{{"version", "1.0.1"}, {"other", true}}));
    QCOMPARE(host.settingsVersion(), QStringLiteral("1.0.1"));
    QCOMPARE(host.content("NelvoUpdateState.dat"), "{\n    \"fullMd5\": \"" + m_server.md5().toLatin1() +
                                                       "\",\n"
                                                       "    \"pVersion\": \"1.0.1\",\n"
                                                       "    \"remarks\": \"first<br/>second\",\n"
                                                       "    \"updateState\": 0\n"
                                                       "}\n");
    const QRegularExpression history(QStringLiteral("^\n\r版本:1.0.1\n\r更新时间:\\d{4}-\\d\\d-\\d\\d_\\d\\d-"
                                                    "\\d\\d-\\d\\d\n\r更新说明:\n\rfirst<br/>second$"));
    const QString written = QString::fromUtf8(host.content("NelvoUpdateLog.txt"));
    QVERIFY2(history.match(written).hasMatch(), qPrintable(written));
    QCOMPARE(host.content("cover.bat"), QByteArray("@echo off\r\n"
                                                   "cd /d %~dp0\r\n"
                                                   "choice /t 2 /d y /n >nul\r\n"
                                                   "if exist NelvoUnCompress\\NelvoUpdateLog.txt (\r\n"
                                                   "    del NelvoUnCompress\\NelvoUpdateLog.txt\r\n"
                                                   ")\r\n"
                                                   "if exist NelvoUnCompress\\updateConfig.json (\r\n"
                                                   "    del NelvoUnCompress\\updateConfig.json\r\n"
                                                   ")\r\n"
                                                   "if exist NelvoUnCompress\\NelvoUpdateState.dat (\r\n"
                                                   "    del NelvoUnCompress\\NelvoUpdateState.dat\r\n"
                                                   ")\r\n"
                                                   "xcopy /e /y /i NelvoUnCompress .\r\n"
                                                   "rd /s /q NelvoUnCompress\r\n"
                                                   "start ./NelvoEditor.exe\r\n"
                                                   "del %0"));
    QCOMPARE(host.content("NelvoUpdate/NelvoEditor.zip"), m_server.package());
    QCOMPARE(host.content("NelvoUnCompress/NelvoEditor.exe"), QByteArray(200000, 'x'));
    QCOMPARE(host.content("NelvoUnCompress/qml/Main.qml"), QByteArray("Item {}"));
    QCOMPARE(host.content("NelvoUnCompress/updateConfig.json"), QByteArray(R"({"version": "9.9"})"));
}

//! Killed during the download, after the checksum, during the unpacking and after the new version has been
//! recorded, one after the other. The host ends itself for the last one: a kill from outside might be too
//! late.
void TestE2eUpdateRestart::updateGoesOnOverEveryKill()
{
    ZipArchive archive;
    archive.add("first", QByteArray(200000, '1'));
    archive.add("../held", "2");
    archive.add("last", "3");
    m_server.offer(archive.bytes());
    Installation host(QStringLiteral(UPDATEHOST));
    // A pipe without a reader blocks the unpacking at its second entry.
    if (!makeFifo(host.path("held")))
        QSKIP("stops the host at a named pipe in its directory; Windows keeps named pipes elsewhere");

    m_server.stallAfter(70000);
    host.start(m_server.arguments("update"));
    QTRY_COMPARE_WITH_TIMEOUT(host.content("NelvoUpdate/NelvoEditor.zip").size(), 70000, Patience);
    host.kill();
    QCOMPARE(host.state(), 1);
    QCOMPARE(host.recordsAt("downloadStarted"), QStringLiteral("downloadComp"));

    m_server.deliver();
    host.start(m_server.arguments("download"));
    QVERIFY(host.reaches("downloadFinished"));
    QTRY_COMPARE_WITH_TIMEOUT(host.state(), 2, Patience);
    host.kill();
    QCOMPARE(m_server.ranges(), (QByteArrayList{"bytes=0-", "bytes=70000-"}));
    QCOMPARE(host.content("NelvoUpdate/NelvoEditor.zip"), m_server.package());

    host.start(m_server.arguments("update"));
    QTRY_VERIFY_WITH_TIMEOUT(host.exists("NelvoUnCompress/first"), Patience);
    host.kill();
    QVERIFY(host.events().contains(QStringLiteral("log 4 > 校验通过")));
    QVERIFY(!host.events().contains("downloadStarted"));
    QCOMPARE(host.state(), 2);
    QVERIFY(!host.exists("NelvoUnCompress/last"));
    QCOMPARE(host.configVersion(), QStringLiteral("1.0.0"));

    QVERIFY(QFile::remove(host.path("held")));
    host.write("NelvoUnCompress/left over", "");
    QVERIFY(!host.run(m_server.arguments("commitment")));
    QCOMPARE(host.events().constLast(), QStringLiteral("upgradeEnd"));
    QVERIFY(!host.events().contains("downloadStarted"));
    QCOMPARE(host.content("NelvoUnCompress/last"), QByteArray("3"));
    QVERIFY(!host.exists("NelvoUnCompress/left over"));
    QCOMPARE(host.state(), 0);
    QCOMPARE(host.configVersion(), QStringLiteral("1.0.1"));
    QVERIFY(!host.exists("cover.bat"));

    // Recorded: the old files count as the new release.
    QVERIFY2(host.run(m_server.arguments("check")), host.output().constData());
    QVERIFY(host.events().contains("needUpdate 0"));
    QCOMPARE(host.events().constLast(), QStringLiteral("left with 1.0.1"));
    QCOMPARE(m_server.ranges().size(), 2);
}

void TestE2eUpdateRestart::batchFileStartsOnceTheHostIsDone()
{
    // A package without an editor: the old editor must start again.
    ZipArchive archive;
    archive.add("first.txt", "new");
    archive.add("qml/Main.qml", "Item {}");
    m_server.offer(archive.bytes());
    Installation host(QStringLiteral(UPDATEHOST), QStringLiteral(COVER_HOME));
    const BatchFile batch(host, installCover(host));
    host.write("first.txt", "old");
    QVERIFY2(host.run(m_server.arguments("update")), host.output().constData());
    QTRY_COMPARE_WITH_TIMEOUT(batch.trace(), QByteArray(COVER_TRACE "\n"), Patience);
    QTRY_VERIFY_WITH_TIMEOUT(!host.exists("NelvoUnCompress"), Patience);
    QCOMPARE(host.content("first.txt"), QByteArray("new"));
    QCOMPARE(host.content("qml/Main.qml"), QByteArray("Item {}"));

    QVERIFY2(host.run(m_server.arguments("check")), host.output().constData());
    QVERIFY(host.events().contains("needUpdate 0"));
    QCOMPARE(host.configVersion(), QStringLiteral("1.0.1"));
}

QTEST_GUILESS_MAIN(TestE2eUpdateRestart)
#include "test_e2e_update_restart.moc"
