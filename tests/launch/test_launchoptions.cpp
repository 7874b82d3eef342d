
#include "commandline/commandline.h"
#include "launch/launcher.h"

#include <QtTest>

using namespace NelvoDevkit;

namespace {

const QStringList Required{"nelvo-launch", "--user", "lina", "--url", "http://s:80", "--enterprise", "1003"};
const QStringList Complete = Required + QStringList{"--password", "123456"};

} // namespace

class TestLaunchOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsLeftOutHasADefault();
    void everythingGiven();
    void passwordIsHashed_data();
    void passwordIsHashed();
    void md5PassesUnchanged();
    void namesDifferEachTime();
    void emptyTextsMayBeGiven();
    void help();
    void mistakes_data();
    void mistakes();
};

void TestLaunchOptions::whatIsLeftOutHasADefault()
{
    const auto options = LaunchOptions::parse(Complete);
    QVERIFY(options);
    QVERIFY(options->patience == std::chrono::seconds(60));
    QVERIFY(options->afterwards == LaunchOptions::Afterwards::Leave);
    QVERIFY2(options->host.endsWith(QStringLiteral("/app/NelvoEditor")), qPrintable(options->host));
}

void TestLaunchOptions::everythingGiven()
{
    const QStringList further{"--host", "editor",    "--timeout", "5",    "--event",
                              "E",      "--mapping", "M",         "--end"};
    const auto options = LaunchOptions::parse(Complete + further);
    QVERIFY(options);
    QCOMPARE(options->host, QStringLiteral("editor"));
    QVERIFY(options->patience == std::chrono::seconds(5));
    QVERIFY(options->afterwards == LaunchOptions::Afterwards::End);
    QCOMPARE(options->hostArgument(),
             QStringLiteral("lina$$e10adc3949ba59abbe56e057f20f883e$$http://s:80$$E$$M$$1003"));
}

void TestLaunchOptions::passwordIsHashed_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("md5");
    QTest::newRow("digits") << QStringLiteral("123456") << QStringLiteral("e10adc3949ba59abbe56e057f20f883e");
    QTest::newRow("empty") << QString() << QStringLiteral("d41d8cd98f00b204e9800998ecf8427e");
    QTest::newRow("UTF-8") << QStringLiteral("é") << QStringLiteral("66ddcd97cfdeabb2f6fb8a999b4bc76f");
}

void TestLaunchOptions::passwordIsHashed()
{
    QFETCH(QString, password);
    QFETCH(QString, md5);
    const auto options = LaunchOptions::parse(Required + QStringList{"--password", password});
    QVERIFY(options);
    QCOMPARE(options->passwordMd5, md5);
}

void TestLaunchOptions::md5PassesUnchanged()
{
    const auto options = LaunchOptions::parse(Required + QStringList{"--md5", "Not A Digest"});
    QVERIFY(options);
    QCOMPARE(options->passwordMd5, QStringLiteral("Not A Digest"));
}

void TestLaunchOptions::namesDifferEachTime()
{
    const auto one = LaunchOptions::parse(Complete);
    const auto other = LaunchOptions::parse(Complete);
    QVERIFY(one && other);
    const QSet<QString> names{one->eventName, one->mappingName, other->eventName, other->mappingName};
    QCOMPARE(names.size(), 4);
}

void TestLaunchOptions::emptyTextsMayBeGiven()
{
    const auto options = LaunchOptions::parse({"nelvo-launch", "--user", "", "--url", "", "--enterprise", "",
                                               "--md5", "", "--event", "E", "--mapping", "M"});
    QVERIFY(options);
    QCOMPARE(options->hostArgument(), QStringLiteral("$$$$$$E$$M$$"));
}

void TestLaunchOptions::help()
{
    QVERIFY(!LaunchOptions::parse({"nelvo-launch", "--help"}));
}

void TestLaunchOptions::mistakes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char* name, const QStringList& arguments, const char* error) {
        QTest::newRow(name) << arguments << QString::fromUtf8(error);
    };
    row("nothing", {"nelvo-launch"}, "'--user' is missing");
    row("no address", {"nelvo-launch", "--user", "u"}, "'--url' is missing");
    row("no enterprise", {"nelvo-launch", "--user", "u", "--url", "s"}, "'--enterprise' is missing");
    row("no password", Required, "one of '--password' and '--md5' is needed");
    row("two passwords", Complete + QStringList{"--md5", "x"}, "one of '--password' and '--md5' is needed");
    row("unknown option", Complete + QStringList{"--colour"}, "Unknown option 'colour'");
    row("loose argument", Complete + QStringList{"blue"}, "unknown argument 'blue'");
    row("value missing", Complete + QStringList{"--host"}, "Missing value after '--host'");
    row("no number", Complete + QStringList{"--timeout", "soon"},
        "'--timeout' takes a number of seconds above 0");
    row("no time", Complete + QStringList{"--timeout", "0"}, "'--timeout' takes a number of seconds above 0");
    row("two ends", Complete + QStringList{"--end", "--await-end"},
        "'--end' and '--await-end' exclude one another");
    row("event without name", Complete + QStringList{"--event", ""}, "event and mapping need names");
    row("mapping without name", Complete + QStringList{"--mapping", ""}, "event and mapping need names");
    const char* const ambiguous =
        "no text may hold \"$$\" or end in \"$\": the host could not tell them apart";
    row("separator in a text", Complete + QStringList{"--event", "a$$b"}, ambiguous);
    row("separator at the end", Complete + QStringList{"--event", "a$"}, ambiguous);
}

void TestLaunchOptions::mistakes()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    try {
        LaunchOptions::parse(arguments);
        QFAIL("the program accepts the wrong arguments");
    } catch (const Failure& failure) {
        QCOMPARE(failure.text, error + QStringLiteral("; --help lists the options"));
        QCOMPARE(failure.status, int(LaunchStatus::WrongUsage));
    }
}

QTEST_GUILESS_MAIN(TestLaunchOptions)
#include "test_launchoptions.moc"
