#include "login/addressfiles.h"

#include "tests/support/applicationfile.h"
#include "tests/support/messagelog.h"
#include "tests/support/systemtexts.h"

#include <QtTest>

using TestSupport::ApplicationFile;
using TestSupport::MessageLog;

class TestAddressFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultServerIsRead();
    void missingDefaultServerFileIsLogged();
    void damagedDefaultServerFileIsLogged();
    void oddDefaultServerFilesGiveNothing_data();
    void oddDefaultServerFilesGiveNothing();
    void suffixIsRead();
    void suffixFailuresAreSilent_data();
    void suffixFailuresAreSilent();
};

namespace {

const auto DefaultServerFile = QStringLiteral("defaultServerAddress.json");
const auto SuffixFile = QStringLiteral("ProxyUrlSuffix.json");

} // namespace

void TestAddressFiles::defaultServerIsRead()
{
    const ApplicationFile file(DefaultServerFile);
    file.write(R"({"other": 1, "defaultServer": "http://server:81"})");
    MessageLog log;
    QCOMPARE(NelvoPlugin::readDefaultServer(), QStringLiteral("http://server:81"));
    QVERIFY(log.entries().isEmpty());
}

void TestAddressFiles::missingDefaultServerFileIsLogged()
{
    const ApplicationFile file(DefaultServerFile);
    MessageLog log;
    QCOMPARE(NelvoPlugin::readDefaultServer(), QString());
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("open file  %1 failed: %2")
                                             .arg(file.path(), TestSupport::openError(file.path()))});
    QCOMPARE(log.entries().constFirst().file, QStringLiteral("login/addressfiles.cpp"));
}

void TestAddressFiles::damagedDefaultServerFileIsLogged()
{
    const ApplicationFile file(DefaultServerFile);
    file.write("{\"defaultServer\": ");
    MessageLog log;
    QCOMPARE(NelvoPlugin::readDefaultServer(), QString());
    QCOMPARE(log.warnings().size(), 1);
    QVERIFY(log.warnings().constFirst().startsWith(QStringLiteral("parse json failed: ")));
}

void TestAddressFiles::oddDefaultServerFilesGiveNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no key") << QByteArray("{}");
    QTest::newRow("array") << QByteArray("[\"defaultServer\"]");
    QTest::newRow("number") << QByteArray("{\"defaultServer\": 5}");
}

void TestAddressFiles::oddDefaultServerFilesGiveNothing()
{
    QFETCH(QByteArray, content);
    const ApplicationFile file(DefaultServerFile);
    file.write(content);
    MessageLog log;
    QCOMPARE(NelvoPlugin::readDefaultServer(), QString());
    QVERIFY(log.entries().isEmpty());
}

void TestAddressFiles::suffixIsRead()
{
    const ApplicationFile file(SuffixFile);
    file.write(R"({"UrlSuffix": "/proxy"})");
    QCOMPARE(NelvoPlugin::readUrlSuffix(), QStringLiteral("/proxy"));
}

void TestAddressFiles::suffixFailuresAreSilent_data()
{
    QTest::addColumn<bool>("present");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << false << QByteArray();
    QTest::newRow("empty") << true << QByteArray();
    QTest::newRow("damaged") << true << QByteArray("{\"UrlSuffix\"");
    QTest::newRow("no key") << true << QByteArray("{}");
    QTest::newRow("array") << true << QByteArray("[]");
}

void TestAddressFiles::suffixFailuresAreSilent()
{
    QFETCH(bool, present);
    QFETCH(QByteArray, content);
    const ApplicationFile file(SuffixFile);
    if (present)
        file.write(content);
    MessageLog log;
    QCOMPARE(NelvoPlugin::readUrlSuffix(), QString());
    QVERIFY(log.entries().isEmpty());
}

QTEST_GUILESS_MAIN(TestAddressFiles)
#include "test_addressfiles.moc"
