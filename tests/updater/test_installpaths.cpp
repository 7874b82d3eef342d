#include "tests/updater/batchfile.h"
#include "tests/updater/installation.h"
#include "tests/updater/releaseserver.h"
#include "tests/updater/ziparchive.h"

#include <QDir>
#include <QtTest>

namespace {

constexpr int Patience = Installation::Patience;

//! A writable directory on another drive than the temporary files; empty if there is none.
QString otherDrive()
{
    const QString own = QDir::tempPath().section('/', 0, 0);
    const QFileInfoList drives = QDir::drives();
    for (const QFileInfo& drive : drives) {
        if (drive.path().section('/', 0, 0).compare(own, Qt::CaseInsensitive) == 0)
            continue;
        for (const QString& parent : {drive.path(), drive.path() + QStringLiteral("tmp")}) {
            if (QTemporaryDir(parent + QStringLiteral("/nelvo-XXXXXX")).isValid())
                return parent;
        }
    }
    return {};
}

} // namespace

//! \brief Installations in directories whose paths some programs cannot handle.
class TestInstallPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void directory_data();
    void directory();
    void directoryOnAnotherDrive();
    // Many functions of Windows fail for paths of 260 characters or more.
    void longDirectory();
    void longNamesInThePackage();

private:
    static void filesOfTheSignInAreUsed(const QString& subdirectory, const QString& parent);
    void updateIsInstalled(const QString& subdirectory, const QString& parent, bool covered);
    void everythingWorks(const QString& subdirectory, const QString& parent = QDir::tempPath(),
                         bool covered = true);

    ReleaseServer m_server;
};

void TestInstallPaths::init()
{
    ZipArchive archive;
    archive.add("first.txt", "new");
    archive.add("qml/Main.qml", "Item {}");
    m_server.offer(archive.bytes());
}

void TestInstallPaths::filesOfTheSignInAreUsed(const QString& subdirectory, const QString& parent)
{
    Installation host(QStringLiteral(FILEHOST), subdirectory, parent);
    host.write("defaultServerAddress.json", R"({"defaultServer": "http://server:81"})");
    host.write("ProxyUrlSuffix.json", R"({"UrlSuffix": "/proxy"})");
    host.write("loginchache.json", R"([{"user": "zhangwei", "cimUrlList": []}])");
    QVERIFY(host.run({}));
    QCOMPARE(QString::fromUtf8(host.output()).split(QRegularExpression("\r?\n")),
             (QStringList{"http://server:81", "/proxy", "lina", "zhangwei", QString()}));
    QVERIFY(host.content("loginchache.json").contains("lina"));
}

void TestInstallPaths::updateIsInstalled(const QString& subdirectory, const QString& parent, bool covered)
{
    Installation host(QStringLiteral(UPDATEHOST_RUNNABLE), subdirectory, parent);
    const BatchFile batch(host, host.path("cover.bat"));
    host.makeBatchFileStartable();
    host.write("first.txt", "old");
    QVERIFY(host.run(m_server.arguments("download")));
    QCOMPARE(host.events().constLast(), QStringLiteral("left with 1.0.1"));
    QCOMPARE(host.content("NelvoUpdate/NelvoEditor.zip"), m_server.package());
    QCOMPARE(host.configVersion(), QStringLiteral("1.0.1"));
    QCOMPARE(host.json("NelvoUpdateState.dat").value("fullMd5").toString(), m_server.md5());
    QCOMPARE(host.state(), 0);
    if (covered) {
        QTRY_VERIFY_WITH_TIMEOUT(!host.exists("cover.bat"), Patience);
        QTRY_COMPARE_WITH_TIMEOUT(batch.trace(), QByteArray("started with 0 arguments\n"), Patience);
        QVERIFY(!host.exists("NelvoUnCompress"));
        QCOMPARE(host.content("first.txt"), QByteArray("new"));
        QCOMPARE(host.content("qml/Main.qml"), QByteArray("Item {}"));
    } else {
        QVERIFY(host.exists("cover.bat"));
        QCOMPARE(host.content("NelvoUnCompress/first.txt"), QByteArray("new"));
        QCOMPARE(host.content("first.txt"), QByteArray("old"));
    }
}

void TestInstallPaths::everythingWorks(const QString& subdirectory, const QString& parent, bool covered)
{
    filesOfTheSignInAreUsed(subdirectory, parent);
    if (!QTest::currentTestFailed())
        updateIsInstalled(subdirectory, parent, covered);
}

void TestInstallPaths::directory_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("covered");
    QTest::newRow("ASCII") << QStringLiteral("NelvoEditor") << true;
    QTest::newRow("Chinese") << QStringLiteral("三维编辑器") << true;
    QTest::newRow("Chinese below Chinese") << QStringLiteral("软件/三维编辑器") << true;
    QTest::newRow("no code page has all of it") << QStringLiteral("编辑器-é-Ж") << true;
    // A blank splits the path of the batch file, so the batch file is not started.
    QTest::newRow("blank") << QStringLiteral("Nelvo Editor") << false;
    QTest::newRow("Chinese with a blank") << QStringLiteral("三维 编辑器") << false;
}

void TestInstallPaths::directory()
{
    QFETCH(const QString, name);
    QFETCH(const bool, covered);
    everythingWorks(name, QDir::tempPath(), covered);
}

void TestInstallPaths::directoryOnAnotherDrive()
{
    const QString drive = otherDrive();
    if (drive.isEmpty())
        QSKIP("the system has no drive letters, or the user can write to one drive only");
    everythingWorks(Installation::WithoutBlank, drive);
}

void TestInstallPaths::longDirectory()
{
    const QString subdirectory = QString(120, 'a') + '/' + QString(120, 'b') + '/' + QString(60, 'c');
    if (HAS_SHORT_PATHS) {
        // Windows starts no program from such a path.
        Installation host(QStringLiteral(FILEHOST), subdirectory);
        QVERIFY(!host.run({}));
    } else {
        everythingWorks(subdirectory);
    }
}

//! The package is unpacked completely. The batch file does not run here, because the result of xcopy with
//! such paths depends on Windows.
void TestInstallPaths::longNamesInThePackage()
{
    const QString name = QString(120, 'a') + '/' + QString(120, 'b') + "/deep.txt";
    ZipArchive archive;
    archive.add("first.txt", "new");
    archive.add(name.toLatin1(), "deep");
    m_server.offer(archive.bytes());
    Installation host(QStringLiteral(UPDATEHOST_RUNNABLE));
    QVERIFY(host.run(m_server.arguments("download")));
    QVERIFY(host.path("NelvoUnCompress/" + name).size() > 260);
    QCOMPARE(host.content("NelvoUnCompress/" + name), QByteArray("deep"));
    QCOMPARE(host.content("NelvoUnCompress/first.txt"), QByteArray("new"));
    QCOMPARE(host.state(), 0);
}

QTEST_GUILESS_MAIN(TestInstallPaths)
#include "test_installpaths.moc"
