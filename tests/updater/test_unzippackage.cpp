#include "updater/unzippackage.h"

#include "tests/updater/ziparchive.h"

#include <quazip/quazip.h>
#include <quazip/quazipfile.h>

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <new>

using Damage = ZipArchive::Entry::Damage;

namespace {

//! Sets the system's code page to GBK, as on the target systems, while it exists. Other tests use UTF-8.
class GbkSystem
{
public:
    GbkSystem() : m_before(QTextCodec::codecForLocale())
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("GBK"));
    }
    ~GbkSystem() { QTextCodec::setCodecForLocale(m_before); }
    Q_DISABLE_COPY(GbkSystem)

private:
    QTextCodec* m_before;
};

//! Throws std::bad_alloc when it decodes a name with "too much".
class MemorylessCodec final : public QTextCodec
{
public:
    QByteArray name() const override { return "memoryless"; }
    int mibEnum() const override { return -4711; }

protected:
    QString convertToUnicode(const char* bytes, int size, ConverterState* /*state*/) const override
    {
        const auto text = QByteArray::fromRawData(bytes, size);
        if (text.contains("too much"))
            throw std::bad_alloc();
        return QString::fromUtf8(text);
    }
    QByteArray convertFromUnicode(const QChar* text, int size, ConverterState* /*state*/) const override
    {
        return QString(text, size).toUtf8();
    }
};

QByteArray gbk(const QString& text)
{
    return QTextCodec::codecForName("GBK")->fromUnicode(text);
}

//! The simple way, for comparison: opens each entry by package and name, with a new object of the library.
bool unpackPlainly(const QString& zipFile, const QString& destDir)
{
    QDir(destDir).removeRecursively();
    QDir().mkpath(destDir);
    QuaZip zip(zipFile);
    zip.setFileNameCodec("gb2312");
    if (!zip.open(QuaZip::mdUnzip)) {
        QDir(destDir).removeRecursively();
        return false;
    }
    for (bool more = zip.goToFirstFile(); more; more = zip.goToNextFile()) {
        const QString name = zip.getCurrentFileName();
        QuaZipFile entry(zip.getZipName(), name);
        const QByteArray data = entry.open(QIODevice::ReadOnly) ? entry.readAll() : QByteArray();
        entry.close();
        if (name.endsWith(QLatin1Char('/')))
            continue;
        const QString target = destDir + QLatin1Char('/') + name;
        QDir().mkpath(QFileInfo(target).path());
        QFile file(target);
        if (!file.open(QIODevice::WriteOnly)) {
            QDir(destDir).removeRecursively();
            return false;
        }
        file.write(data);
    }
    if (zip.getZipError() != 0)
        QDir(destDir).removeRecursively();
    return zip.getZipError() == 0;
}

//! All files and directories below a directory. A file has its content, a directory an empty value.
using Tree = QMap<QString, QByteArray>;

Tree treeOf(const QString& path)
{
    Tree tree;
    const QDir root(path);
    QDirIterator it(path, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        const bool directory = it.fileInfo().isDir();
        const bool opened = !directory && file.open(QIODevice::ReadOnly);
        tree.insert(root.relativeFilePath(it.filePath()) + (directory ? QStringLiteral("/") : QString()),
                    opened ? file.readAll() : QByteArray());
    }
    return tree;
}

QByteArray noise(int size)
{
    QByteArray bytes(size, '\0');
    quint32 state = 1;
    for (char& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>((state >> 24) & 0x3F);
    }
    return bytes;
}

constexpr auto Bzip2Piece = "the data of the entry, ";
constexpr int Bzip2Pieces = 15000;

//! These pieces, packed by bzip2 in several blocks.
QByteArray bzip2Stream()
{
    return QByteArray::fromBase64(
        "QlpoMTFBWSZTWXeSAYUAqc2RgEAEJ0GUIDAA0EQNA0BNVRkDIQNA0MxAqsECqwQKrogVWyBVbIFV4QKrwgVXsQKrggVWiBVZiBVf"
        "ECqwQKrkgVXxAquYgVWiBVbIFSeYoKyTKay7yQDCgFTmyMAgAhOgyhAYAGgiBoGgJqqMgZCBoGhmIFVggVWCBVdECq2QKrZAqvCB"
        "VeECq9iBVcECq0QKrMQKr4gVWCBVckCq+IFVzECq0QKrZAqTzFBWSZTWXeSAYUAqc2RgEAEJ0GUIDAA0EQNA0BNVRkDIQNA0MxAq"
        "sECqwQKrogVWyBVbIFV4QKrwgVXsQKrggVWiBVZiBVfECqwQKrkgVXxAquYgVWiBVbIFSeYoKyTKazEFURkgCZCyMAgAhOgyhAYA"
        "FwEDQNAgaBoCaqjIGTMKQwKQwKQ6FIbFIbFIeCkPBSHsKQ4FIaFIZhSHwpDApDkUh8KQ5hSGhSGxSH4u5IpwoSALrQP6");
}

ZipArchive::Entry bzip2Entry(const QByteArray& stream)
{
    return {"bzip2", QByteArray(Bzip2Piece).repeated(Bzip2Pieces), false, false, Damage::None, stream};
}

} // namespace

Q_DECLARE_METATYPE(QVector<ZipArchive::Entry>)

class TestUnzipPackage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void filesComeWithTheirDirectories();
    void directoryEntriesLeaveNothing();
    void earlierContentIsWiped();
    void fileInUseDoesNotStopTheUnpacking();
    void fileInUseIsOverwritten();
    void directoryIsCreatedWithItsParents();
    void largeEntryComesWhole();
    void chineseNamesOnAGbkSystem();
    void chineseNamesOnAUtf8SystemComeEmpty();
    void nameFlaggedAsUtf8ComesWhole();
    void firstOfDuplicatesCounts();
    void firstOfDuplicatesCountsAlsoBehindAnUnknownName();
    void entryWithoutAHeaderGivesAnEmptyFile();
    void entryWithAWrongChecksumGivesItsData();
    void entryWithDamagedDataGivesWhatCouldBeRead();
    void bzip2EntryComesAsFromTheLibrary();
    void bzip2EntryThatEndsEarlyGivesWhatCouldBeRead();
    void emptyBzip2EntryGivesAnEmptyFile();
    void parentStepsLeadOutOfTheDirectory();
    void sameAsTheLookUpAnew_data();
    void sameAsTheLookUpAnew();

    void packageWithoutEntriesIsASuccess();
    void missingPackageFails();
    void emptyPathFails();
    void fileThatIsNoPackageFails();
    void cutPackageFails();
    void damagedDirectoryOfEntriesFails();
    void unwritableTargetFails();
    void diskWithoutRoomFails();
    void lackOfMemoryFails();
    void failureRemovesTheDirectory();
    void tenThousandEntries();
    void duplicatesTakeNoLongerThanOthers();

private:
    bool unpack(const QByteArray& package);
    bool unpack(const ZipArchive& archive) { return unpack(archive.bytes()); }
    Tree unpacked() const { return treeOf(m_dest); }
    //! Whether this system refuses to remove an open file.
    bool keepsOpenFiles() const;

    std::unique_ptr<GbkSystem> m_system;
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_package;
    QString m_dest;
};

void TestUnzipPackage::initTestCase()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

void TestUnzipPackage::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_package = m_dir->filePath(QStringLiteral("package.zip"));
    m_dest = m_dir->filePath(QStringLiteral("unpacked"));
}

//! The files must be removed under the code page that was set when they were created.
void TestUnzipPackage::cleanup()
{
    m_dir.reset();
    m_system.reset();
}

bool TestUnzipPackage::unpack(const QByteArray& package)
{
    QFile file(m_package);
    if (!file.open(QIODevice::WriteOnly) || file.write(package) != package.size())
        qFatal("cannot write the package");
    file.close();
    return unzipPackage(m_package, m_dest);
}

bool TestUnzipPackage::keepsOpenFiles() const
{
    QFile open(m_dir->filePath(QStringLiteral("open")));
    if (!open.open(QIODevice::WriteOnly))
        qFatal("cannot write a file");
    return !QFile::remove(open.fileName());
}

void TestUnzipPackage::filesComeWithTheirDirectories()
{
    ZipArchive archive;
    archive.add("NelvoEditor.exe", "program");
    archive.add("plugins/deep/one.dll", "library");
    archive.add("empty.txt", "");
    archive.add({"packed.txt", QByteArray(5000, 'x'), false, true});
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"NelvoEditor.exe", "program"},
                               {"plugins/", {}},
                               {"plugins/deep/", {}},
                               {"plugins/deep/one.dll", "library"},
                               {"empty.txt", ""},
                               {"packed.txt", QByteArray(5000, 'x')}}));
}

void TestUnzipPackage::directoryEntriesLeaveNothing()
{
    ZipArchive archive;
    archive.add("empty/", "");
    archive.add("full/", "");
    archive.add("full/file", "content");
    archive.add("odd/", "data of a directory");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"full/", {}}, {"full/file", "content"}}));
}

void TestUnzipPackage::earlierContentIsWiped()
{
    QVERIFY(QDir().mkpath(m_dest + "/old/deep"));
    QFile left(m_dest + "/old/file");
    QVERIFY(left.open(QIODevice::WriteOnly));
    left.close();
    ZipArchive archive;
    archive.add("new", "1");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"new", "1"}}));
}

//! Some systems refuse to remove an open file. All others are removed, and the new files are written.
void TestUnzipPackage::fileInUseDoesNotStopTheUnpacking()
{
    QVERIFY(QDir().mkpath(m_dest + "/old/deep"));
    QFile used(m_dest + "/old/used");
    QVERIFY(used.open(QIODevice::ReadWrite));
    const Tree kept = keepsOpenFiles() ? Tree{{"old/", {}}, {"old/used", {}}} : Tree{};
    ZipArchive archive;
    archive.add("new", "1");
    QVERIFY(unpack(archive));
    Tree expected = kept;
    expected.insert("new", "1");
    QCOMPARE(unpacked(), expected);
    QVERIFY(!unpack(QByteArray("no package")));
    QCOMPARE(unpacked(), kept);
    QCOMPARE(QFileInfo::exists(m_dest), !kept.isEmpty());

    used.close();
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"new", "1"}}));
}

void TestUnzipPackage::fileInUseIsOverwritten()
{
    QVERIFY(QDir().mkpath(m_dest));
    QFile used(m_dest + "/used");
    QVERIFY(used.open(QIODevice::ReadWrite));
    ZipArchive archive;
    archive.add("used", "new");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"used", "new"}}));
    QCOMPARE(used.readAll(), QByteArray(keepsOpenFiles() ? "new" : ""));
}

void TestUnzipPackage::directoryIsCreatedWithItsParents()
{
    m_dest = m_dir->filePath(QStringLiteral("a/b/c"));
    ZipArchive archive;
    archive.add("file", "1");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"file", "1"}}));
}

void TestUnzipPackage::largeEntryComesWhole()
{
    const QByteArray data = noise(8 * 1024 * 1024);
    ZipArchive archive;
    archive.add("stored", data);
    archive.add({"deflated", data, false, true});
    QVERIFY(unpack(archive));
    QVERIFY(unpacked() == (Tree{{"stored", data}, {"deflated", data}}));
}

void TestUnzipPackage::chineseNamesOnAGbkSystem()
{
    m_system = std::make_unique<GbkSystem>();
    ZipArchive archive;
    archive.add(gbk("资源/说明.txt"), "text");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"资源/", {}}, {"资源/说明.txt", "text"}}));
}

void TestUnzipPackage::chineseNamesOnAUtf8SystemComeEmpty()
{
    ZipArchive archive;
    archive.add(gbk("资源/说明.txt"), "text");
    archive.add("plain.txt", "plain");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"资源/", {}}, {"资源/说明.txt", ""}, {"plain.txt", "plain"}}));
}

void TestUnzipPackage::nameFlaggedAsUtf8ComesWhole()
{
    ZipArchive archive;
    archive.add({QByteArray("说明.txt"), "text", true});
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"说明.txt", "text"}}));
}

void TestUnzipPackage::firstOfDuplicatesCounts()
{
    ZipArchive archive;
    archive.add("twice", "first");
    archive.add("between", "1");
    archive.add("twice", "second");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"twice", "first"}, {"between", "1"}}));
}

void TestUnzipPackage::firstOfDuplicatesCountsAlsoBehindAnUnknownName()
{
    // The search for a name that is not found makes the library read all other names.
    ZipArchive archive;
    archive.add(gbk("说明"), "text");
    archive.add("twice", "first");
    archive.add("twice", "second");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"说明", ""}, {"twice", "first"}}));
}

void TestUnzipPackage::entryWithoutAHeaderGivesAnEmptyFile()
{
    ZipArchive archive;
    archive.add("good", "1");
    archive.add({"bad", "2", false, false, Damage::LocalHeader});
    archive.add("good too", "3");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"good", "1"}, {"bad", ""}, {"good too", "3"}}));
}

void TestUnzipPackage::entryWithAWrongChecksumGivesItsData()
{
    ZipArchive archive;
    archive.add({"bad", "the data", false, false, Damage::Checksum});
    archive.add("good", "1");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"bad", "the data"}, {"good", "1"}}));
}

void TestUnzipPackage::entryWithDamagedDataGivesWhatCouldBeRead()
{
    const QByteArray data = noise(256 * 1024);
    ZipArchive archive;
    archive.add({"bad", data, false, true, Damage::Data});
    archive.add("good", "1");
    QVERIFY(unpack(archive));
    const QByteArray left = unpacked().value("bad");
    QVERIFY(!left.isEmpty());
    QVERIFY(left.size() < data.size());
    QVERIFY(data.startsWith(left));
    QCOMPARE(unpacked().value("good"), QByteArray("1"));
}

//! Compares with the library, because a library without bzip2 returns the packed data.
void TestUnzipPackage::bzip2EntryComesAsFromTheLibrary()
{
    QByteArray damaged = bzip2Stream();
    damaged[damaged.size() / 2] = static_cast<char>(~damaged.at(damaged.size() / 2));
    ZipArchive::Entry shorter = bzip2Entry(bzip2Stream());
    shorter.data.chop(1000);
    ZipArchive::Entry longer = bzip2Entry(bzip2Stream());
    longer.data += "more than there is";
    const ZipArchive::Entry withoutAnything{"bzip2", "", false, false, Damage::None, bzip2Stream()};
    for (const ZipArchive::Entry& entry : {bzip2Entry(bzip2Stream()), bzip2Entry(bzip2Stream() + "more"),
                                           bzip2Entry(damaged), shorter, longer, withoutAnything}) {
        ZipArchive archive;
        archive.add(entry);
        archive.add("good", "1");
        QVERIFY(unpack(archive));
        const QString plainly = m_dir->filePath(QStringLiteral("plainly"));
        QVERIFY(unpackPlainly(m_package, plainly));
        QCOMPARE(unpacked(), treeOf(plainly));
        QCOMPARE(unpacked().value("good"), QByteArray("1"));
    }
}

void TestUnzipPackage::bzip2EntryThatEndsEarlyGivesWhatCouldBeRead()
{
    const QByteArray stream = bzip2Stream();
    const QByteArray data = bzip2Entry(stream).data;
    int longest = 0;
    for (int size = 1; size < stream.size(); ++size) {
        ZipArchive archive;
        archive.add(bzip2Entry(stream.left(size)));
        archive.add("good", "1");
        QVERIFY(unpack(archive));
        const QByteArray left = unpacked().value("bzip2");
        QVERIFY2(data.startsWith(left) || stream.startsWith(left), qPrintable(QString::number(size)));
        QCOMPARE(unpacked().value("good"), QByteArray("1"));
        longest = qMax(longest, left.size());
    }
    QVERIFY(longest > 0);
}

void TestUnzipPackage::emptyBzip2EntryGivesAnEmptyFile()
{
    ZipArchive archive;
    archive.add(bzip2Entry(""));
    archive.add("good", "1");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), (Tree{{"bzip2", ""}, {"good", "1"}}));
}

void TestUnzipPackage::parentStepsLeadOutOfTheDirectory()
{
    ZipArchive archive;
    archive.add("../outside.txt", "content");
    QVERIFY(unpack(archive));
    QCOMPARE(unpacked(), Tree{});
    QCOMPARE(treeOf(m_dir->path()).value("outside.txt"), QByteArray("content"));
}

void TestUnzipPackage::sameAsTheLookUpAnew_data()
{
    using Entries = QVector<ZipArchive::Entry>;
    QTest::addColumn<bool>("gbkSystem");
    QTest::addColumn<Entries>("entries");

    const ZipArchive::Entry unknown{gbk("未知"), "unknown"};
    const auto row = [](const char* name, const Entries& entries) {
        QTest::newRow(qPrintable(QStringLiteral("UTF-8 system: ") + name)) << false << entries;
        QTest::newRow(qPrintable(QStringLiteral("GBK system: ") + name)) << true << entries;
    };
    row("plain", {{"a", "1"}, {"b/c", "2"}, {"b/d", ""}});
    row("duplicates", {{"a", "1"}, {"b", "2"}, {"a", "3"}, {"b", "4"}, {"c", "5"}, {"a", "6"}});
    row("duplicates side by side", {{"a", "1"}, {"a", "2"}, {"a", "3"}});
    row("duplicates around an unknown name", {{"a", "1"}, unknown, {"a", "2"}});
    row("duplicates behind an unknown name", {unknown, {"a", "1"}, {"b", "2"}, {"a", "3"}, {"b", "4"}});
    row("duplicates before an unknown name", {{"a", "1"}, {"a", "2"}, unknown, {"b", "3"}});
    row("duplicates of two names in turn, around others",
        {{"a", "1"}, {"x", "2"}, {"b", "3"}, {"a", "4"}, unknown, {"b", "5"}, {"y", "6"}, {"a", "7"}});
    row("duplicates that differ in case", {{"A", "1"}, {"a", "2"}, {"a", "3"}, {"A", "4"}, unknown});
    row("unknown duplicates", {unknown, {"a", "1"}, {gbk("未知"), "again"}});
    row("UTF-8 name without its flag", {{QByteArray("名字"), "1"}, {"a", "2"}});
    row("UTF-8 name with its flag", {{QByteArray("名字"), "1", true}, {"a", "2"}});
    row("one name in two encodings", {{gbk("名字"), "1"}, {QByteArray("名字"), "2", true}, {"a", "3"}});
    row("one name in two encodings, the other way",
        {{QByteArray("名字"), "1", true}, {gbk("名字"), "2"}, {"a", "3"}});
    row("GB2312 bytes that are another's UTF-8",
        {{QByteArray("浣犲ソ"), "1", true}, {QByteArray("你好"), "2"}});
    row("bytes of no encoding", {{"\xFF\xFE", "1"}, {"a", "2"}, {"\x81", "3"}});
    row("names that differ in case", {{"a", "1"}, {"A", "2"}, {"a", "3"}, {"A", "4"}});
    row("other spellings of one path", {{"a", "1"}, {"./a", "2"}, {"a", "3"}, {"b/../a", "4"}});
    row("a duplicate of a directory", {{"d/", ""}, {"d/a", "1"}, {"d/", ""}});
    row("a file where a directory is", {{"d/a", "1"}, {"d", "2"}});
    row("a directory where a file is", {{"d", "1"}, {"d/a", "2"}});
    row("an empty name", {{"a", "1"}, {"", "2"}, {"b", "3"}});
    row("a long name", {{QByteArray(120, 'n') + '/' + QByteArray(120, 'm'), "1"}, {"a", "2"}});
    row("wrong checksum", {{"a", "1", false, false, Damage::Checksum}, {"b", "2"}});
    row("wrong checksum, packed", {{"a", noise(50000), false, true, Damage::Checksum}, {"b", "2"}});
    row("damaged data", {{"a", noise(200000), false, true, Damage::Data}, {"b", noise(50000), false, true}});
    row("no header", {{"a", "1", false, false, Damage::LocalHeader}, {"b", "2"}, {"c", "3"}});
    row("no header in the first of duplicates",
        {{"a", "1", false, false, Damage::LocalHeader}, {"a", "2"}, unknown, {"b", "3"}});
    row("damage last", {{"a", "1"}, {"b", noise(200000), false, true, Damage::Data}});
}

void TestUnzipPackage::sameAsTheLookUpAnew()
{
    QFETCH(const bool, gbkSystem);
    QFETCH(const QVector<ZipArchive::Entry>, entries);
    if (gbkSystem)
        m_system = std::make_unique<GbkSystem>();
    ZipArchive archive;
    for (const ZipArchive::Entry& entry : entries)
        archive.add(entry);
    const bool success = unpack(archive);
    const QString plainly = m_dir->filePath(QStringLiteral("plainly"));
    QCOMPARE(success, unpackPlainly(m_package, plainly));
    QCOMPARE(QFileInfo::exists(m_dest), QFileInfo::exists(plainly));
    QCOMPARE(unpacked(), treeOf(plainly));
}

void TestUnzipPackage::packageWithoutEntriesIsASuccess()
{
    QVERIFY(unpack(ZipArchive()));
    QVERIFY(QFileInfo(m_dest).isDir());
    QCOMPARE(unpacked(), Tree{});
    QVERIFY(unpack("something in front" + ZipArchive().bytes()));
    QVERIFY(QFileInfo(m_dest).isDir());
    QCOMPARE(unpacked(), Tree{});
}

void TestUnzipPackage::missingPackageFails()
{
    QVERIFY(!unzipPackage(m_package, m_dest));
    QVERIFY(!QFileInfo::exists(m_dest));
}

void TestUnzipPackage::emptyPathFails()
{
    QVERIFY(QDir().mkpath(m_dest + "/old"));
    QVERIFY(!unzipPackage({}, m_dest));
    QVERIFY(!QFileInfo::exists(m_dest));
}

void TestUnzipPackage::fileThatIsNoPackageFails()
{
    QVERIFY(!unpack(noise(100000)));
    QVERIFY(!QFileInfo::exists(m_dest));
    QVERIFY(!unpack(QByteArray()));
    QVERIFY(!QFileInfo::exists(m_dest));
}

void TestUnzipPackage::cutPackageFails()
{
    ZipArchive archive;
    archive.add("a", noise(10000));
    archive.add("b", "2");
    const QByteArray whole = archive.bytes();
    for (const int size : {whole.size() - 10, archive.directoryOffset(), whole.size() / 2, 30}) {
        QVERIFY2(!unpack(whole.left(size)), qPrintable(QString::number(size)));
        QVERIFY(!QFileInfo::exists(m_dest));
    }
}

void TestUnzipPackage::damagedDirectoryOfEntriesFails()
{
    ZipArchive archive;
    archive.add("a", "1");
    archive.add("b", "2");
    QByteArray bytes = archive.bytes();
    bytes[bytes.lastIndexOf("PK\x01\x02")] = 'X';
    QVERIFY(!unpack(bytes));
    QVERIFY(!QFileInfo::exists(m_dest));
}

void TestUnzipPackage::unwritableTargetFails()
{
    ZipArchive archive;
    archive.add("d/a", "1");
    archive.add("d", "a file where the directory is");
    archive.add("b", "2");
    QVERIFY(!unpack(archive));
    QVERIFY(!QFileInfo::exists(m_dest));
}

void TestUnzipPackage::diskWithoutRoomFails()
{
    const QString full = QStringLiteral("/dev/full");
    if (!QFileInfo::exists(full))
        QSKIP("only Linux has /dev/full, a device to which every write fails");
    QVERIFY(QFile::link(full, m_dir->filePath(QStringLiteral("full"))));
    for (const int size : {10, 1000000}) {
        ZipArchive archive;
        archive.add("a", "1");
        archive.add("../full", noise(size));
        QVERIFY(!unpack(archive));
        QVERIFY(!QFileInfo::exists(m_dest));
    }
}

void TestUnzipPackage::lackOfMemoryFails()
{
    QTextCodec* before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(new MemorylessCodec); // Qt owns it.
    const auto restore = qScopeGuard([before] { QTextCodec::setCodecForLocale(before); });
    ZipArchive archive;
    archive.add("a", "1");
    archive.add("too much", "2");
    QVERIFY(!unpack(archive));
    QVERIFY(!QFileInfo::exists(m_dest));
}

void TestUnzipPackage::failureRemovesTheDirectory()
{
    QVERIFY(QDir().mkpath(m_dest + "/old/deep"));
    QVERIFY(!unpack(QByteArray("no package")));
    QVERIFY(!QFileInfo::exists(m_dest));
}

void TestUnzipPackage::tenThousandEntries()
{
    ZipArchive archive;
    for (int i = 0; i < 10000; ++i)
        archive.add("dir" + QByteArray::number(i % 100) + "/file" + QByteArray::number(i),
                    QByteArray::number(i));
    QVERIFY(unpack(archive));
    const Tree tree = unpacked();
    QCOMPARE(tree.size(), 10100);
    QCOMPARE(tree.value("dir99/file9999"), QByteArray("9999"));
    QCOMPARE(tree.value("dir34/file1234"), QByteArray("1234"));
}

void TestUnzipPackage::duplicatesTakeNoLongerThanOthers()
{
    constexpr int names = 4000;
    ZipArchive twice;
    ZipArchive once;
    for (const QByteArray content : {"first", "second"}) {
        for (int i = 0; i < names; ++i) {
            const QByteArray name = "file" + QByteArray::number(i);
            twice.add(name, content);
            once.add(name + content, content);
        }
    }
    QElapsedTimer time;
    time.start();
    QVERIFY(unpack(once));
    const qint64 timeOfOthers = time.restart();
    QVERIFY(unpack(twice));
    // With a time that grows with the square of their number, the factor is about 200.
    QVERIFY2(time.elapsed() < 20 * timeOfOthers,
             qPrintable(QStringLiteral("%1 ms, %2 ms").arg(time.elapsed()).arg(timeOfOthers)));
    const Tree tree = unpacked();
    QCOMPARE(tree.size(), names);
    QVERIFY(
        std::all_of(tree.begin(), tree.end(), [](const QByteArray& content) { return content == "first"; }));
}

QTEST_GUILESS_MAIN(TestUnzipPackage)
#include "test_unzippackage.moc"
