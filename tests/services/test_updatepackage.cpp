#include "package/updatepackage.h"
#include "tests/support/files.h"
#include "tests/support/row.h"

#include <quazip/quazip.h>
#include <quazip/quazipfile.h>

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using NelvoDevkit::PackageEntry;
using NelvoDevkit::packDirectory;
using NelvoDevkit::packEntries;
using TestSupport::contentOf;
using TestSupport::row;

namespace {

constexpr int Patience = 20000;

//! The entries of the package in order, read like a client: with names in GB2312.
QVector<PackageEntry> entriesOf(QByteArray package)
{
    QVector<PackageEntry> entries;
    QBuffer buffer(&package);
    QuaZip zip(&buffer);
    zip.setFileNameCodec("gb2312");
    if (!zip.open(QuaZip::mdUnzip))
        return entries;
    for (bool more = zip.goToFirstFile(); more; more = zip.goToNextFile()) {
        QuaZipFile file(&zip);
        file.open(QIODevice::ReadOnly);
        entries.append({zip.getCurrentFileName(), file.readAll()});
    }
    return entries;
}

QStringList namesOf(const QByteArray& package)
{
    QStringList names;
    for (const PackageEntry& entry : entriesOf(package))
        names.append(entry.name);
    return names;
}

void writeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    QVERIFY(QDir().mkpath(QFileInfo(fileName).path()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

} // namespace

//! \brief The library that creates update packages, and the program nelvo-package.
class TestUpdatePackage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void entriesAreFoundAgain();
    void entriesOfOneName();
    void entriesAreNone();
    void namesAreGb2312();
    void namesHaveEveryCharacterOfGb2312();
    void nameIsRefused_data();
    void nameIsRefused();
    void packageIsTheSameEveryTime();

    void directoryIsPackedWhole();
    void directoryGivesTheSamePackageAnywhere();
    void directoryIsSummarised();
    void directoryThatIsEmpty();
    void directoryIsMissing_data();
    void directoryIsMissing();
    void directoryWithANameThatIsRefused();
    void directoryWithNamesInUtf8();
    void targetIsReplaced();
    void targetCannotBeWritten_data();
    void targetCannotBeWritten();
    void targetLiesInTheDirectory();
    void targetStaysAsItIsOnFailure();

    void programPacksAndReports();
    void programWarnsOfNamesThatNeedACodePage_data();
    void programWarnsOfNamesThatNeedACodePage();
    void programTakesRelativePaths();
    void programHelps();
    void programExplainsAFailure_data();
    void programExplainsAFailure();
    void programNeedsBothArguments();

private:
    QString path(const QString& name) const { return m_folder->filePath(name); }
    //! Writes a small installation.
    void writeTree(const QString& root) const;
    void run(const QStringList& arguments);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_program;
};

void TestUpdatePackage::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_program = std::make_unique<QProcess>();
}

void TestUpdatePackage::cleanup()
{
    m_program.reset();
    m_folder.reset();
}

void TestUpdatePackage::writeTree(const QString& root) const
{
    writeFile(path(root + "/NelvoEditor.exe"), "program");
    writeFile(path(root + "/资源/图标.png"), "picture");
    writeFile(path(root + "/资源/空.txt"), {});
    writeFile(path(root + "/.hidden"), "hidden");
    QVERIFY(QDir().mkpath(path(root + "/空目录")));
}

void TestUpdatePackage::run(const QStringList& arguments)
{
    m_program->start(NELVO_PACKAGE_PROGRAM, arguments);
    QVERIFY(m_program->waitForFinished(Patience));
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
}

void TestUpdatePackage::entriesAreFoundAgain()
{
    const QByteArray large(3 * 1024 * 1024 + 1, 'x');
    const QVector<PackageEntry> entries = {
        {"b.txt", "b"}, {"目录/", {}}, {"目录/文件.txt", large}, {"a.txt", {}}};
    QString error;
    const auto package = packEntries(entries, &error);
    QVERIFY2(package, qPrintable(error));
    const QVector<PackageEntry> found = entriesOf(*package);
    QCOMPARE(found.size(), 4);
    for (int i = 0; i < found.size(); ++i) {
        QCOMPARE(found[i].name, entries[i].name);
        QCOMPARE(found[i].content, entries[i].content);
    }
    QVERIFY(package->size() < large.size());
}

void TestUpdatePackage::entriesOfOneName()
{
    QString error;
    const auto package = packEntries({{"a", "first"}, {"a", "second"}}, &error);
    QVERIFY2(package, qPrintable(error));
    const QVector<PackageEntry> found = entriesOf(*package);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found[0].content, QByteArray("first"));
    QCOMPARE(found[1].content, QByteArray("second"));
}

void TestUpdatePackage::entriesAreNone()
{
    QString error;
    const auto package = packEntries({}, &error);
    QVERIFY2(package, qPrintable(error));
    QCOMPARE(*package, QByteArray("PK\x05\x06") + QByteArray(18, '\0'));
}

void TestUpdatePackage::namesAreGb2312()
{
    QString error;
    const auto package = packEntries({{"更新.txt", "x"}}, &error);
    QVERIFY2(package, qPrintable(error));
    const QByteArray name = QByteArray::fromHex("b8fcd0c2") + ".txt";
    QCOMPARE(package->count(name), 2);  // before the content and in the central directory
    QCOMPARE(package->at(7) & 0x08, 0); // not marked as UTF-8
    const int directory = package->indexOf("PK\x01\x02");
    QCOMPARE(package->at(directory + 9) & 0x08, 0);
}

void TestUpdatePackage::namesHaveEveryCharacterOfGb2312()
{
    // The first and the last character of each block.
    const QString name = "　〓⒈⒛⑴⑽①⑩㈠㈩ⅠⅫ！￣ぁんァヶΑΩαωАЯаяāêㄅㄩ─╋啊座亍齄";
    QString error;
    const auto package = packEntries({{name, "x"}}, &error);
    QVERIFY2(package, qPrintable(error));
    QCOMPARE(namesOf(*package), QStringList(name));
}

void TestUpdatePackage::nameIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("in GBK only") << "朱镕基.txt";
    QTest::newRow("in GBK only, among letters") << "ɑ.txt";
    QTest::newRow("in GBK only, among numerals") << "ⅰ.txt";
    QTest::newRow("Latin 1") << "größe.txt";
    QTest::newRow("emoji") << "目录/😀.txt";
}

void TestUpdatePackage::nameIsRefused()
{
    QFETCH(const QString, name);
    QString error;
    QVERIFY(!packEntries({{"a", "x"}, {name, "x"}}, &error));
    QCOMPARE(error, "GB2312 can't hold the name \"" + name + '"');
}

void TestUpdatePackage::packageIsTheSameEveryTime()
{
    const QVector<PackageEntry> entries = {{"目录/", {}}, {"目录/文件.txt", "content"}};
    QString error;
    const auto package = packEntries(entries, &error);
    QVERIFY2(package, qPrintable(error));
    // The checksum of an earlier run, on another day.
    QCOMPARE(TestSupport::md5(*package), QString("6e5428bad4cd79474f38a26a87256e49"));
}

void TestUpdatePackage::directoryIsPackedWhole()
{
    writeTree("tree");
    QString error;
    QVERIFY2(packDirectory(path("tree"), path("p.zip"), &error), qPrintable(error));
    const QByteArray package = contentOf(path("p.zip"));
    QCOMPARE(namesOf(package),
             (QStringList{".hidden", "NelvoEditor.exe", "空目录/", "资源/", "资源/图标.png", "资源/空.txt"}));
    QCOMPARE(entriesOf(package)[4].content, QByteArray("picture"));
    QCOMPARE(entriesOf(package)[5].content, QByteArray());
}

void TestUpdatePackage::directoryGivesTheSamePackageAnywhere()
{
    writeTree("here");
    writeTree("there/below");
    QFile changed(path("there/below/NelvoEditor.exe"));
    QVERIFY(changed.open(QIODevice::ReadWrite));
    QVERIFY(changed.setFileTime(QDateTime({2020, 2, 2}, {2, 2}), QFileDevice::FileModificationTime));
    changed.close();
    QVERIFY(changed.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    QString error;
    QVERIFY2(packDirectory(path("here"), path("1.zip"), &error), qPrintable(error));
    QVERIFY2(packDirectory(path("there/below/"), path("2.zip"), &error), qPrintable(error));
    QCOMPARE(contentOf(path("2.zip")), contentOf(path("1.zip")));
}

void TestUpdatePackage::directoryIsSummarised()
{
    writeTree("tree");
    QString error;
    const auto summary = packDirectory(path("tree"), path("p.zip"), &error);
    QVERIFY2(summary, qPrintable(error));
    const QByteArray package = contentOf(path("p.zip"));
    QCOMPARE(summary->md5, TestSupport::md5(package));
    QCOMPARE(summary->size, package.size());
    QCOMPARE(summary->entries, 6);
}

void TestUpdatePackage::directoryThatIsEmpty()
{
    QVERIFY(QDir().mkpath(path("tree")));
    QString error;
    const auto summary = packDirectory(path("tree"), path("p.zip"), &error);
    QVERIFY2(summary, qPrintable(error));
    QCOMPARE(summary->entries, 0);
    QCOMPARE(summary->size, 22);
}

void TestUpdatePackage::directoryIsMissing_data()
{
    QTest::addColumn<QString>("directory");
    QTest::newRow("nothing") << "missing";
    QTest::newRow("nothing below") << "missing/missing";
    QTest::newRow("file") << "file";
}

void TestUpdatePackage::directoryIsMissing()
{
    QFETCH(const QString, directory);
    writeFile(path("file"), "x");
    QString error;
    QVERIFY(!packDirectory(path(directory), path("p.zip"), &error));
    QCOMPARE(error, "there is no directory " + path(directory));
    QVERIFY(!QFile::exists(path("p.zip")));
}

void TestUpdatePackage::directoryWithANameThatIsRefused()
{
    writeFile(path("tree/一/größe.txt"), "x");
    QString error;
    QVERIFY(!packDirectory(path("tree"), path("p.zip"), &error));
    QCOMPARE(error, QString("GB2312 can't hold the name \"一/größe.txt\""));
    QVERIFY(!QFile::exists(path("p.zip")));
}

//! One of the names cannot be encoded in GB2312.
void TestUpdatePackage::directoryWithNamesInUtf8()
{
    writeFile(path(QStringLiteral("tree/说明😀.txt")), "text");
    writeFile(path(QStringLiteral("tree/plain.txt")), "text");
    QString error;
    const auto summary = packDirectory(path("tree"), path("p.zip"), &error, NelvoDevkit::NameEncoding::Utf8);
    QVERIFY2(summary, qPrintable(error));
    QCOMPARE(summary->namesBeyondAscii, QStringList{QStringLiteral("说明😀.txt")});
    const QByteArray package = contentOf(path("p.zip"));
    // The archive marks its names as UTF-8, so a client that expects GB2312 reads them correctly.
    QCOMPARE(namesOf(package), (QStringList{"plain.txt", QStringLiteral("说明😀.txt")}));
    QVERIFY(package.contains("说明😀.txt"));
}

void TestUpdatePackage::targetIsReplaced()
{
    writeTree("tree");
    writeFile(path("p.zip"), QByteArray(100000, 'x'));
    QString error;
    const auto summary = packDirectory(path("tree"), path("p.zip"), &error);
    QVERIFY2(summary, qPrintable(error));
    QCOMPARE(contentOf(path("p.zip")).size(), summary->size);
}

void TestUpdatePackage::targetCannotBeWritten_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("no directory") << "missing/p.zip";
    QTest::newRow("is a directory") << "other";
}

void TestUpdatePackage::targetCannotBeWritten()
{
    QFETCH(const QString, target);
    writeTree("tree");
    QVERIFY(QDir().mkpath(path("other")));
    QString error;
    QVERIFY(!packDirectory(path("tree"), path(target), &error));
    QVERIFY2(error.startsWith("can't write " + path(target) + ": "), qPrintable(error));
}

void TestUpdatePackage::targetLiesInTheDirectory()
{
    writeTree("tree");
    for (const char* target : {"tree/p.zip", "tree/资源/p.zip", "tree/资源/../p.zip"}) {
        QString error;
        QVERIFY(!packDirectory(path("tree"), path(target), &error));
        QCOMPARE(error, QString("the package can't lie in the directory that it is made from"));
        QVERIFY(!QFile::exists(path(target)));
    }
    QVERIFY(QDir().mkpath(path("tree2")));
    QString error;
    QVERIFY2(packDirectory(path("tree"), path("tree2/p.zip"), &error), qPrintable(error));
}

void TestUpdatePackage::targetStaysAsItIsOnFailure()
{
    writeFile(path("tree/größe.txt"), "x");
    writeFile(path("p.zip"), "old");
    QString error;
    QVERIFY(!packDirectory(path("tree"), path("p.zip"), &error));
    QCOMPARE(contentOf(path("p.zip")), QByteArray("old"));
}

void TestUpdatePackage::programPacksAndReports()
{
    writeTree("tree");
    run({path("tree"), path("包.zip")});
    QCOMPARE(m_program->exitCode(), 0);
    const QByteArray package = contentOf(path("包.zip"));
    QCOMPARE(namesOf(package).size(), 6);
    const QJsonObject expected = {{"package", path("包.zip")},
                                  {"md5", TestSupport::md5(package)},
                                  {"size", package.size()},
                                  {"entries", 6}};
    QCOMPARE(QJsonDocument::fromJson(m_program->readAllStandardOutput()).object(), expected);
}

void TestUpdatePackage::programWarnsOfNamesThatNeedACodePage_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("warning");
    row("ASCII", "plain.txt", QStringList(), "");
    row("GB2312", "图标.png", QStringList(),
        "nelvo-package: 1 of the names need a system whose code page holds GB2312, such as \"图标.png\"; "
        "elsewhere use "
        "--utf8\n");
    row("marked as UTF-8", "图标.png", QStringList{"--utf8"}, "");
}

void TestUpdatePackage::programWarnsOfNamesThatNeedACodePage()
{
    QFETCH(QString, name);
    QFETCH(QStringList, options);
    QFETCH(QString, warning);
    writeFile(path("tree/" + name), "content");
    run(options + QStringList{path("tree"), path("p.zip")});
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(QString::fromUtf8(m_program->readAllStandardError()), warning);
    QCOMPARE(namesOf(contentOf(path("p.zip"))), QStringList{name});
}

void TestUpdatePackage::programTakesRelativePaths()
{
    writeTree("tree");
    m_program->setWorkingDirectory(m_folder->path());
    run({"tree", "p.zip"});
    QCOMPARE(m_program->exitCode(), 0);
    QVERIFY(namesOf(contentOf(path("p.zip"))).contains("资源/图标.png"));
    QVERIFY(m_program->readAllStandardOutput().contains(path("p.zip").toUtf8()));
    m_program->setWorkingDirectory(path("tree"));
    run({".", "../same.zip"});
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(contentOf(path("same.zip")), contentOf(path("p.zip")));
    run({"", "../empty.zip"});
    QCOMPARE(m_program->exitCode(), 1);
}

void TestUpdatePackage::programHelps()
{
    run({"--help"});
    QCOMPARE(m_program->exitCode(), 0);
    const QByteArray help = m_program->readAllStandardOutput();
    for (const char* text : {"directory", "package", "GB2312", "JSON"})
        QVERIFY2(help.contains(text), text);
}

void TestUpdatePackage::programExplainsAFailure_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("complaint");
    row("missing directory", "missing", "p.zip", "there is no directory ");
    row("unwritable target", "tree", "missing/p.zip", "can't write ");
    row("name", "bad", "p.zip", "GB2312 can't hold the name \"größe.txt\"");
}

void TestUpdatePackage::programExplainsAFailure()
{
    QFETCH(const QString, directory);
    QFETCH(const QString, target);
    QFETCH(const QString, complaint);
    writeTree("tree");
    writeFile(path("bad/größe.txt"), "x");
    run({path(directory), path(target)});
    QCOMPARE(m_program->exitCode(), 1);
    QCOMPARE(m_program->readAllStandardOutput(), QByteArray());
    const QString output = QString::fromUtf8(m_program->readAllStandardError());
    QVERIFY2(output.startsWith("nelvo-package: " + complaint), qPrintable(output));
}

void TestUpdatePackage::programNeedsBothArguments()
{
    writeTree("tree");
    for (const QStringList& arguments :
         {QStringList(), QStringList(path("tree")), QStringList{path("tree"), path("p.zip"), path("more")}}) {
        run(arguments);
        QCOMPARE(m_program->exitCode(), 2);
        QVERIFY(m_program->readAllStandardError().contains("takes a directory and a package"));
        QVERIFY(!QFile::exists(path("p.zip")));
    }
}

QTEST_GUILESS_MAIN(TestUpdatePackage)
#include "test_updatepackage.moc"
