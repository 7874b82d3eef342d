#include "login/logincache.h"

#include "tests/support/applicationfile.h"
#include "tests/support/messagelog.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include <filesystem>

using NelvoPlugin::CLoginCache;
using NelvoPlugin::UserCacheEntry;
using TestSupport::ApplicationFile;
using TestSupport::MessageLog;

class TestLoginCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void fileStandsBesideTheExecutable();
    void fileToTheByte();
    void missingFileIsAnEmptyCache();
    void unreadableContentIsAnEmptyCache_data();
    void unreadableContentIsAnEmptyCache();
    void oddElementsAreKept();
    void valuesOfOtherTypesAreConverted();
    void nullTextsLeaveTheirKeysOut();

    void newUserStandsInFront();
    void knownUserMovesToTheFrontAndKeepsItsHistory();
    void knownAddressMovesToTheFrontAndStandsOnce();
    void userNamesAreCaseSensitive();
    void secondEntryOfAUserStays();
    void usersAndAddressesHaveNoLimit();
    void emptyPasswordOverwritesTheStoredOne();
    void damagedCacheIsLostOnUpdate();
    void unwritableFileKeepsItsContent();
    void fileIsRewrittenInPlace();

    void asciiPasswordPassesUnchanged();
    void latin1PasswordComesBackAltered();
    void everyRewriteAltersEveryonesPassword();
    void otherCharactersAreWrittenAsQuestionMarks();

private:
    QJsonArray fileContent() const;
    std::list<UserCacheEntry> read() const;

    std::unique_ptr<ApplicationFile> m_file;
};

namespace {

QStringList users(const std::list<UserCacheEntry>& entries)
{
    QStringList names;
    for (const UserCacheEntry& entry : entries)
        names.append(entry.user);
    return names;
}

} // namespace

void TestLoginCache::init()
{
    m_file = std::make_unique<ApplicationFile>(QStringLiteral("loginchache.json"));
}

void TestLoginCache::cleanup()
{
    m_file.reset();
}

QJsonArray TestLoginCache::fileContent() const
{
    return QJsonDocument::fromJson(m_file->content()).array();
}

std::list<UserCacheEntry> TestLoginCache::read() const
{
    std::list<UserCacheEntry> entries(3);
    CLoginCache::readUsers(entries);
    return entries;
}

void TestLoginCache::fileStandsBesideTheExecutable()
{
    QCOMPARE(CLoginCache::cacheFilePath(), m_file->path());
}

void TestLoginCache::fileToTheByte()
{
    CLoginCache::updateUser(QStringLiteral("李娜"), QStringLiteral("123456"), QStringLiteral("http://a"),
                            QStringLiteral(""));
    QCOMPARE(m_file->content(), QByteArray("[\n"
                                           "    {\n"
                                           "        \"cimUrlList\": [\n"
                                           "            \"http://a\"\n"
                                           "        ],\n"
                                           "        \"passwd\": \"MTIzNDU2\",\n"
                                           "        \"pdsUrlList\": [\n"
                                           "            \"\"\n"
                                           "        ],\n"
                                           "        \"user\": \"\xE6\x9D\x8E\xE5\xA8\x9C\"\n"
                                           "    }\n"
                                           "]\n"));
}

void TestLoginCache::missingFileIsAnEmptyCache()
{
    MessageLog log;
    QVERIFY(read().empty());
    QVERIFY(log.entries().isEmpty());
}

void TestLoginCache::unreadableContentIsAnEmptyCache_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("object") << QByteArray(R"({"user": "a"})");
    QTest::newRow("cut") << QByteArray(R"([{"user": "a"})");
    QTest::newRow("trailing text") << QByteArray(R"([{"user": "a"}] x)");
}

void TestLoginCache::unreadableContentIsAnEmptyCache()
{
    QFETCH(QByteArray, content);
    m_file->write(content);
    MessageLog log;
    QVERIFY(read().empty());
    QVERIFY(log.entries().isEmpty());
}

void TestLoginCache::oddElementsAreKept()
{
    m_file->write(R"([5, {"user": "a"}, "text"])");
    QCOMPARE(users(read()), (QStringList{QString(), QStringLiteral("a"), QString()}));
}

void TestLoginCache::valuesOfOtherTypesAreConverted()
{
    m_file->write(R"([{"user": 5, "passwd": {}, "cimUrlList": "http://a", "pdsUrlList": [1, true, {}]}])");
    const std::list<UserCacheEntry> entries = read();
    QCOMPARE(entries.size(), std::size_t(1));
    QCOMPARE(entries.front().user, QStringLiteral("5"));
    QCOMPARE(entries.front().passwd, QString());
    QCOMPARE(entries.front().cimUrlList, QStringList());
    QCOMPARE(entries.front().pdsUrlList,
             (QStringList{QStringLiteral("1"), QStringLiteral("true"), QString()}));
}

void TestLoginCache::nullTextsLeaveTheirKeysOut()
{
    CLoginCache::writeUsers({UserCacheEntry{}});
    QCOMPARE(fileContent().at(0).toObject().keys(),
             (QStringList{QStringLiteral("cimUrlList"), QStringLiteral("pdsUrlList")}));
    CLoginCache::writeUsers({UserCacheEntry{QStringLiteral(""), QStringLiteral(""), {}, {}}});
    QCOMPARE(fileContent().at(0).toObject().keys(),
             (QStringList{QStringLiteral("cimUrlList"), QStringLiteral("passwd"),
                          QStringLiteral("pdsUrlList"), QStringLiteral("user")}));
}

void TestLoginCache::newUserStandsInFront()
{
    for (const char* user : {"a", "b", "c"})
        CLoginCache::updateUser(QLatin1String(user), {}, QStringLiteral("http://s"), {});
    QCOMPARE(users(read()), (QStringList{QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("a")}));
}

void TestLoginCache::knownUserMovesToTheFrontAndKeepsItsHistory()
{
    CLoginCache::updateUser(QStringLiteral("a"), {}, QStringLiteral("http://1"), QStringLiteral("p1"));
    CLoginCache::updateUser(QStringLiteral("b"), {}, QStringLiteral("http://b"), {});
    CLoginCache::updateUser(QStringLiteral("a"), {}, QStringLiteral("http://2"), QStringLiteral("p2"));
    const std::list<UserCacheEntry> entries = read();
    QCOMPARE(users(entries), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(entries.front().cimUrlList,
             (QStringList{QStringLiteral("http://2"), QStringLiteral("http://1")}));
    QCOMPARE(entries.front().pdsUrlList, (QStringList{QStringLiteral("p2"), QStringLiteral("p1")}));
}

void TestLoginCache::knownAddressMovesToTheFrontAndStandsOnce()
{
    m_file->write(R"([{"user": "a", "cimUrlList": ["x", "y", "X", "y"], "pdsUrlList": ["", ""]}])");
    CLoginCache::updateUser(QStringLiteral("a"), {}, QStringLiteral("y"), QStringLiteral(""));
    const std::list<UserCacheEntry> entries = read();
    QCOMPARE(entries.front().cimUrlList,
             (QStringList{QStringLiteral("y"), QStringLiteral("x"), QStringLiteral("X")}));
    QCOMPARE(entries.front().pdsUrlList, QStringList{QStringLiteral("")});
}

void TestLoginCache::userNamesAreCaseSensitive()
{
    CLoginCache::updateUser(QStringLiteral("lina"), {}, QStringLiteral("http://1"), {});
    CLoginCache::updateUser(QStringLiteral("Lina"), {}, QStringLiteral("http://2"), {});
    QCOMPARE(users(read()), (QStringList{QStringLiteral("Lina"), QStringLiteral("lina")}));
}

void TestLoginCache::secondEntryOfAUserStays()
{
    m_file->write(
        R"([{"user": "b"}, {"user": "a", "cimUrlList": ["1"]}, {"user": "a", "cimUrlList": ["2"]}])");
    CLoginCache::updateUser(QStringLiteral("a"), {}, QStringLiteral("3"), {});
    const std::list<UserCacheEntry> entries = read();
    QCOMPARE(users(entries), (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a")}));
    QCOMPARE(entries.front().cimUrlList, (QStringList{QStringLiteral("3"), QStringLiteral("1")}));
    QCOMPARE(entries.back().cimUrlList, QStringList{QStringLiteral("2")});
}

void TestLoginCache::usersAndAddressesHaveNoLimit()
{
    constexpr int many = 1000;
    std::list<UserCacheEntry> entries;
    for (int i = 0; i < many; ++i)
        entries.push_back({QString::number(i), {}, {}, {}});
    for (int i = 0; i < many; ++i) {
        entries.back().cimUrlList.append(QString::number(i));
        entries.back().pdsUrlList.append(QString::number(i));
    }
    CLoginCache::writeUsers(entries);
    CLoginCache::updateUser(entries.back().user, {}, QStringLiteral("cim"), QStringLiteral("pds"));
    CLoginCache::updateUser(QStringLiteral("one more"), {}, {}, {});
    const std::list<UserCacheEntry> all = read();
    QCOMPARE(all.size(), std::size_t(many + 1));
    QCOMPARE(std::next(all.begin())->cimUrlList.size(), many + 1);
    QCOMPARE(std::next(all.begin())->pdsUrlList.size(), many + 1);
}

void TestLoginCache::emptyPasswordOverwritesTheStoredOne()
{
    CLoginCache::updateUser(QStringLiteral("a"), QStringLiteral("secret"), QStringLiteral("1"), {});
    CLoginCache::updateUser(QStringLiteral("a"), QStringLiteral(""), QStringLiteral("1"), {});
    QCOMPARE(fileContent().at(0).toObject().value(QStringLiteral("passwd")), QJsonValue(QStringLiteral("")));
}

void TestLoginCache::damagedCacheIsLostOnUpdate()
{
    m_file->write(R"([{"user": "old"}, )");
    CLoginCache::updateUser(QStringLiteral("new"), {}, QStringLiteral("1"), {});
    QCOMPARE(users(read()), QStringList{QStringLiteral("new")});
}

//! A directory in place of the file can be neither read nor written, even by root.
void TestLoginCache::unwritableFileKeepsItsContent()
{
    QVERIFY(QDir().mkdir(m_file->path()));
    MessageLog log;
    CLoginCache::updateUser(QStringLiteral("a"), {}, QStringLiteral("1"), {});
    QVERIFY(read().empty());
    QVERIFY(QFileInfo(m_file->path()).isDir());
    QVERIFY(log.entries().isEmpty());
    QVERIFY(QDir().rmdir(m_file->path()));
}

//! The cache file is rewritten, not replaced: after a replacement, a hard link would have the old content.
void TestLoginCache::fileIsRewrittenInPlace()
{
    m_file->write("[]");
    const ApplicationFile other(QStringLiteral("othername.json"));
    std::filesystem::create_hard_link(m_file->path().toStdString(), other.path().toStdString());
    CLoginCache::updateUser(QStringLiteral("a"), {}, QStringLiteral("1"), {});
    QVERIFY(other.content().contains("\"a\""));
    QCOMPARE(other.content(), m_file->content());
}

void TestLoginCache::asciiPasswordPassesUnchanged()
{
    QString ascii;
    for (char character = ' '; character <= '~'; ++character)
        ascii.append(QLatin1Char(character));
    CLoginCache::updateUser(QStringLiteral("a"), ascii, QStringLiteral("1"), {});
    QCOMPARE(read().front().passwd, ascii);
}

void TestLoginCache::latin1PasswordComesBackAltered()
{
    CLoginCache::updateUser(QStringLiteral("a"), QStringLiteral("Größe"), QStringLiteral("1"), {});
    QCOMPARE(QByteArray::fromBase64(
                 fileContent().at(0).toObject().value(QStringLiteral("passwd")).toString().toLatin1()),
             QByteArray("Gr\xF6\xDF"
                        "e"));
    // The Latin-1 bytes beyond ASCII are invalid UTF-8: each becomes the replacement character.
    const QString altered = read().front().passwd;
    QCOMPARE(altered, QString::fromUtf8("Gr\xF6\xDF"
                                        "e"));
    QVERIFY(altered.contains(QChar::ReplacementCharacter));
}

void TestLoginCache::everyRewriteAltersEveryonesPassword()
{
    CLoginCache::updateUser(QStringLiteral("a"), QStringLiteral("é1"), QStringLiteral("1"), {});
    const QString stored = fileContent().at(0).toObject().value(QStringLiteral("passwd")).toString();
    CLoginCache::updateUser(QStringLiteral("b"), QStringLiteral("x"), QStringLiteral("1"), {});
    const QString rewritten = fileContent().at(1).toObject().value(QStringLiteral("passwd")).toString();
    QVERIFY(stored != rewritten);
    QCOMPARE(QByteArray::fromBase64(rewritten.toLatin1()), QByteArray("?1"));
}

void TestLoginCache::otherCharactersAreWrittenAsQuestionMarks()
{
    CLoginCache::updateUser(QStringLiteral("a"), QStringLiteral("密码1"), QStringLiteral("1"), {});
    QCOMPARE(read().front().passwd, QStringLiteral("??1"));
}

QTEST_GUILESS_MAIN(TestLoginCache)
#include "test_logincache.moc"
