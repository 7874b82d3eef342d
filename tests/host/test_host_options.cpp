#include "commandline/commandline.h"

#include "host/hostoptions.h"
#include "tests/support/row.h"

#include <QtTest>

using NelvoDevkit::Failure;
using NelvoDevkit::HostOptions;
using TestSupport::row;

class TestHostOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingGiven();
    void everyOption();
    void updateCheck();
    void singleArgumentBelongsToThePlugin_data();
    void singleArgumentBelongsToThePlugin();
    void mistakes_data();
    void mistakes();
};

void TestHostOptions::nothingGiven()
{
    const auto options = HostOptions::parse({QStringLiteral("NelvoEditor")});
    QVERIFY(options);
    QCOMPARE(options->settingsFile, QString());
    QCOMPARE(options->updateCheck, QString());
}

void TestHostOptions::everyOption()
{
    const auto options = HostOptions::parse({"NelvoEditor", "--check-update", "start", "--settings", "--x"});
    QVERIFY(options);
    QCOMPARE(options->settingsFile, QStringLiteral("--x"));
    QCOMPARE(options->updateCheck, QStringLiteral("start"));
}

void TestHostOptions::updateCheck()
{
    for (const QString& when : {QStringLiteral("start"), QStringLiteral("sign-in")}) {
        const auto options = HostOptions::parse({"NelvoEditor", "--check-update", when});
        QVERIFY(options);
        QCOMPARE(options->updateCheck, when);
    }
}

void TestHostOptions::singleArgumentBelongsToThePlugin_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("sign-in") << QStringLiteral("lina$$0123$$127.0.0.1:8100$$event$$mapping$$1001");
    QTest::newRow("help") << QStringLiteral("--help");
    QTest::newRow("option without value") << QStringLiteral("--settings");
    QTest::newRow("empty") << QString();
}

void TestHostOptions::singleArgumentBelongsToThePlugin()
{
    QFETCH(QString, argument);
    const auto options = HostOptions::parse({QStringLiteral("NelvoEditor"), argument});
    QVERIFY(options);
    QCOMPARE(options->settingsFile, QString());
}

void TestHostOptions::mistakes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    row("unknown", QStringList{"--setings", "s.json"}, "Unknown option 'setings'");
    row("no option", QStringList{"s.json", "t.json"}, "unknown argument 's.json'");
    row("value missing", QStringList{"--settings", "s.json", "--check-update"},
        "Missing value after '--check-update'");
    row("value empty", QStringList{"--settings", ""}, "'--settings' needs a value");
    row("unknown moment", QStringList{"--check-update", "never"},
        "'--check-update' takes 'start' or 'sign-in'");
}

void TestHostOptions::mistakes()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    try {
        HostOptions::parse(QStringList(QStringLiteral("NelvoEditor")) + arguments);
        QFAIL("the host accepts the wrong arguments");
    } catch (const Failure& failure) {
        QCOMPARE(failure.text, error + QStringLiteral("; --help lists the options"));
        QCOMPARE(failure.status, 2);
    }
}

QTEST_GUILESS_MAIN(TestHostOptions)
#include "test_host_options.moc"
