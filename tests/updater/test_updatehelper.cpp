#include "updater/updatehelper.h"

#include "updater/sourcefile.h"

#include "tests/support/messagelog.h"
#include "tests/support/systemtexts.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <limits>
#include <memory>

using TestSupport::MessageLog;

class TestUpdateHelper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void sourceFileIsRelativeForEveryCompiler();
    void readGivesTheWholeFile();
    void readServesResources();
    void failedReadIsLoggedAndLeavesTheBytes();
    void writeReplacesTheContent();
    void failedWriteIsLogged();
    void writeWithoutRoomIsLogged();
    void jsonObjectIsRead();
    void jsonOfAnotherKindGivesAnEmptyObject();
    void invalidJsonIsLoggedAndLeavesTheResult();
    void missingJsonFileIsLoggedAndLeavesTheResult();
    void md5OfAFile_data();
    void md5OfAFile();
    void md5OfAMissingFileIsLogged();
    void md5OfAnEmptyFileIsLogged();
    void md5OfADirectoryFails();
    void md5OfTwoGibibytesFails();
    void removeAFile();
    void removeADirectoryWithItsContent();
    void removeNothing();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    QString write(const QString& name, const QByteArray& content) const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestUpdateHelper::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

QString TestUpdateHelper::write(const QString& name, const QByteArray& content) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qUtf8Printable(name));
    return file.fileName();
}

void TestUpdateHelper::readGivesTheWholeFile()
{
    QByteArray bytes("before");
    QVERIFY(readFileBytes(write("file", QByteArray("a\0b\r\n", 5)), bytes));
    QCOMPARE(bytes, QByteArray("a\0b\r\n", 5));
    QVERIFY(readFileBytes(write("empty", ""), bytes));
    QCOMPARE(bytes, QByteArray());
}

void TestUpdateHelper::readServesResources()
{
    const QByteArrayList lines{"@echo off",
                               "cd /d %~dp0",
                               "choice /t 2 /d y /n >nul",
                               "if exist NelvoUnCompress\\NelvoUpdateLog.txt (",
                               "    del NelvoUnCompress\\NelvoUpdateLog.txt",
                               ")",
                               "if exist NelvoUnCompress\\updateConfig.json (",
                               "    del NelvoUnCompress\\updateConfig.json",
                               ")",
                               "if exist NelvoUnCompress\\NelvoUpdateState.dat (",
                               "    del NelvoUnCompress\\NelvoUpdateState.dat",
                               ")",
                               "xcopy /e /y /i NelvoUnCompress .",
                               "rd /s /q NelvoUnCompress",
                               "start ./NelvoEditor.exe",
                               "del %0"};
    QByteArray bytes;
    QVERIFY(readFileBytes(QStringLiteral(":/NelvoPlugin/Login/cover.bat"), bytes));
    QCOMPARE(bytes, lines.join("\r\n"));
}

void TestUpdateHelper::failedReadIsLoggedAndLeavesTheBytes()
{
    const MessageLog log;
    QByteArray bytes("before");
    QVERIFY(!readFileBytes(path("missing"), bytes));
    QCOMPARE(bytes, QByteArray("before"));
    QCOMPARE(log.entries().size(), 1);
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("open file  %1 failed: %2")
                                             .arg(path("missing"), TestSupport::openError(path("missing")))});
    QCOMPARE(log.entries().constFirst().file, QStringLiteral("updater/updatehelper.cpp"));
}

void TestUpdateHelper::writeReplacesTheContent()
{
    const QString file = write("file", "a long content");
    QVERIFY(writeFileBytes(file, "short\r\n"));
    QByteArray bytes;
    QVERIFY(readFileBytes(file, bytes));
    QCOMPARE(bytes, QByteArray("short\r\n"));
    QVERIFY(writeFileBytes(path("new"), {}));
    QVERIFY(QFile::exists(path("new")));
}

void TestUpdateHelper::failedWriteIsLogged()
{
    const MessageLog log;
    const QString file = path("missing/file");
    QVERIFY(!writeFileBytes(file, "content"));
    QCOMPARE(log.entries().size(), 1);
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("open file  %1 failed: %2")
                                             .arg(file, TestSupport::openError(file, QIODevice::WriteOnly))});
}

void TestUpdateHelper::writeWithoutRoomIsLogged()
{
    const QString full = QStringLiteral("/dev/full");
    if (!QFile::exists(full))
        QSKIP("only Linux has /dev/full, a device to which every write fails");
    const MessageLog log;
    QVERIFY(!writeFileBytes(full, "content"));
    QCOMPARE(log.warnings(), QStringList{"open file  /dev/full failed: No space left on device"});
}

void TestUpdateHelper::jsonObjectIsRead()
{
    QJsonObject result{{"before", 1}};
    QVERIFY(readJsonObject(write("file", R"({"version": "1.0"})"), result));
    QCOMPARE(result, (QJsonObject{{"version", "1.0"}}));
}

void TestUpdateHelper::jsonOfAnotherKindGivesAnEmptyObject()
{
    QJsonObject result{{"before", 1}};
    QVERIFY(readJsonObject(write("file", R"([1, 2])"), result));
    QCOMPARE(result, QJsonObject());
}

void TestUpdateHelper::invalidJsonIsLoggedAndLeavesTheResult()
{
    const MessageLog log;
    QJsonObject result{{"before", 1}};
    QVERIFY(!readJsonObject(write("file", "no json"), result));
    QVERIFY(!readJsonObject(write("file", ""), result));
    QCOMPARE(result, (QJsonObject{{"before", 1}}));
    QCOMPARE(log.warnings(),
             (QStringList{"parse json failed: illegal value", "parse json failed: illegal value"}));
    QCOMPARE(log.entries().constFirst().file, QStringLiteral("updater/updatehelper.cpp"));
}

void TestUpdateHelper::missingJsonFileIsLoggedAndLeavesTheResult()
{
    const MessageLog log;
    QJsonObject result{{"before", 1}};
    QVERIFY(!readJsonObject(path("missing"), result));
    QCOMPARE(result, (QJsonObject{{"before", 1}}));
    QCOMPARE(log.warnings().size(), 1);
    QVERIFY(log.warnings().constFirst().startsWith(QLatin1String("open file  ")));
}

void TestUpdateHelper::md5OfAFile_data()
{
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("equal");
    QTest::newRow("lower case") << "900150983cd24fb0d6963f7d28e17f72" << true;
    QTest::newRow("upper case") << "900150983CD24FB0D6963F7D28E17F72" << true;
    QTest::newRow("mixed case") << "900150983cd24fb0D6963F7D28E17F72" << true;
    QTest::newRow("another") << "000150983cd24fb0d6963f7d28e17f72" << false;
    QTest::newRow("cut") << "900150983cd24fb0d6963f7d28e17f7" << false;
    QTest::newRow("blank behind") << "900150983cd24fb0d6963f7d28e17f72 " << false;
    QTest::newRow("empty") << "" << false;
}

void TestUpdateHelper::md5OfAFile()
{
    QFETCH(const QString, expected);
    const MessageLog log;
    QTEST(checkMd5(write("file", "abc"), expected), "equal");
    QVERIFY(log.entries().isEmpty());
}

void TestUpdateHelper::md5OfAMissingFileIsLogged()
{
    const MessageLog log;
    QVERIFY(!checkMd5(path("missing"), "900150983cd24fb0d6963f7d28e17f72"));
    QCOMPARE(log.entries().size(), 1);
    const QRegularExpression expected(R"(^updater/updatehelper\.cpp \d+ open failed )" +
                                      QRegularExpression::escape(TestSupport::openError(path("missing"))) +
                                      '$');
    QVERIFY2(expected.match(log.warnings().value(0)).hasMatch(), qPrintable(log.warnings().value(0)));
}

void TestUpdateHelper::md5OfAnEmptyFileIsLogged()
{
    const MessageLog log;
    // The MD5 of no bytes.
    QVERIFY(!checkMd5(write("empty", ""), "d41d8cd98f00b204e9800998ecf8427e"));
    QCOMPARE(log.entries().size(), 1);
    const QRegularExpression expected(R"(^updater/updatehelper\.cpp \d+ map failed$)");
    QVERIFY2(expected.match(log.warnings().value(0)).hasMatch(), qPrintable(log.warnings().value(0)));
}

void TestUpdateHelper::md5OfADirectoryFails()
{
    const MessageLog log;
    QVERIFY(!checkMd5(m_dir->path(), "d41d8cd98f00b204e9800998ecf8427e"));
    QCOMPARE(log.warnings().size(), 1);
}

void TestUpdateHelper::md5OfTwoGibibytesFails()
{
    // A sparse file, which takes no space on the disk.
    QFile file(path("large"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(std::numeric_limits<int>::max() + Q_INT64_C(1)));
    file.close();
    // The MD5 of 2 GiB of zeros.
    QVERIFY(!checkMd5(file.fileName(), "a981130cf2b7e09f4686dc273cf7187e"));
}

void TestUpdateHelper::removeAFile()
{
    const QString file = write("file", "content");
    removePath(file);
    QVERIFY(!QFile::exists(file));
    QVERIFY(QFile::exists(m_dir->path()));
}

void TestUpdateHelper::removeADirectoryWithItsContent()
{
    QVERIFY(QDir(m_dir->path()).mkpath("a/b/c"));
    write("a/file", "1");
    write("a/b/.hidden", "2");
    write("other", "3");
    removePath(path("a"));
    QVERIFY(!QFile::exists(path("a")));
    QVERIFY(QFile::exists(path("other")));
}

void TestUpdateHelper::removeNothing()
{
    const MessageLog log;
    write("other", "1");
    const QDir here = QDir::current();
    QVERIFY(QDir::setCurrent(m_dir->path()));
    removePath(path("missing"));
    removePath({});
    QVERIFY(QDir::setCurrent(here.path()));
    QVERIFY(QFile::exists(path("other")));
    QVERIFY(log.entries().isEmpty());
}

//! Some compilers cannot shorten `__FILE__`: it is the whole path, with the separators of the system.
void TestUpdateHelper::sourceFileIsRelativeForEveryCompiler()
{
    const QByteArray expected("updater/updater.cpp");
    QCOMPARE(QByteArray(SourceFile(R"(C:\build\nelvo\updater\updater.cpp)").text), expected);
    QCOMPARE(QByteArray(SourceFile("/home/a b/nelvo/updater/updater.cpp").text), expected);
    QCOMPARE(QByteArray(SourceFile(R"(..\..\updater\updater.cpp)").text), expected);
    QCOMPARE(QByteArray(SourceFile("updater/updater.cpp").text), expected);
    QCOMPARE(QByteArray(SourceFile("updater.cpp").text), QByteArray("updater.cpp"));
    constexpr SourceFile here(__FILE__);
    static_assert(here.text[0] == 'u', "made at compile time");
    QCOMPARE(QByteArray(NELVO_SOURCE_FILE), QByteArray("updater/test_updatehelper.cpp"));
}

QTEST_GUILESS_MAIN(TestUpdateHelper)
#include "test_updatehelper.moc"
