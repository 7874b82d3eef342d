#include <QProcess>
#include <QtTest>

//! Hosts with unusual calls, each in a separate process: the process continues, and ends with the requested
//! status.
class TestE2eSurvival : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void processEnds_data();
    void processEnds();
    void waitingCallReturns_data();
    void waitingCallReturns();
    void observerMayDoIt_data();
    void observerMayDoIt();
    void closingWindowMayBeAnswered_data();
    void closingWindowMayBeAnswered();
    void updateMayBeAnswered_data();
    void updateMayBeAnswered();

private:
    static void addRows(const QList<QByteArray>& names);
    //! Runs the host with the name of the row.
    static void run();
};

namespace {

//! As in tests/e2e/survival.
constexpr int Survived = 42;

QList<QByteArray> combine(const QList<QByteArray>& beginnings, const QByteArray& middle,
                          const QList<QByteArray>& ends)
{
    QList<QByteArray> names;
    for (const QByteArray& beginning : beginnings) {
        for (const QByteArray& end : ends)
            names.append(beginning + middle + end);
    }
    return names;
}

} // namespace

void TestE2eSurvival::addRows(const QList<QByteArray>& names)
{
    QTest::addColumn<QString>("scenario");
    for (const QByteArray& name : names)
        QTest::newRow(name.constData()) << QString::fromLatin1(name);
}

void TestE2eSurvival::run()
{
    QFETCH(QString, scenario);
    QProcess host;
    host.setProcessChannelMode(QProcess::MergedChannels);
    // A process that calls exit releases nothing, which is no leak.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (scenario.startsWith(QStringLiteral("exit ")))
        environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    host.setProcessEnvironment(environment);
    host.start(QStringLiteral(SURVIVALHOST), {scenario, QStringLiteral("-")});
    QVERIFY2(host.waitForFinished(120000), "the process hangs");
    const QByteArray output = host.readAll();
    QVERIFY2(host.exitStatus() == QProcess::NormalExit, output.constData());
    QVERIFY2(host.exitCode() == Survived, output.constData());
    // Qt's warning about a manager on another thread.
    QVERIFY2(!output.contains("different thread"), output.constData());
}

void TestE2eSurvival::processEnds_data()
{
    QList<QByteArray> names{"return after a call",   "exit with the window shown", "exit after SetQmlContext",
                            "exit during a fetch",   "exit during a sign-in",      "two applications",
                            "shutdowns without need"};
    // A sanitizer delays freeing memory, so the growth has no meaning.
    if (!NELVO_SANITIZED)
        names += "a thousand times";
    addRows(names);
}

void TestE2eSurvival::processEnds()
{
    run();
}

void TestE2eSurvival::waitingCallReturns_data()
{
    QList<QByteArray> names =
        combine({"Shutdown", "Initialize"}, " during ",
                {"login, form", "login, answer", "login, companies", "onLogin, binding", "onLogin, addresses",
                 "onLogin, token", "onLogin, heartbeat", "refresh", "tick", "list", "add", "rename", "unbind",
                 "bind", "check", "tick inside login"});
    names += {"Shutdown during Start, form", "Shutdown during Start, token", "Shutdown during the logout"};
    addRows(names);
}

void TestE2eSurvival::waitingCallReturns()
{
    run();
}

void TestE2eSurvival::observerMayDoIt_data()
{
    QList<QByteArray> names =
        combine({"Shutdown", "Initialize"}, " in ",
                {"OnLoginSucceeded", "OnLoginFailed", "OnMessageFirst", "OnMessageSecond", "OnMessageThird",
                 "a push-out", "opened", "closed", "cleared", "synced", "download", "convert"});
    names += "loading in OnLoginSucceeded while an update arrives";
    addRows(names);
}

void TestE2eSurvival::observerMayDoIt()
{
    run();
}

void TestE2eSurvival::closingWindowMayBeAnswered_data()
{
    QList<QByteArray> names =
        combine({"Shutdown", "Initialize", "ShowLogin"}, " at ",
                {"the close button, lastWindowClosed", "the close button, visibleChanged",
                 "the host's close, lastWindowClosed", "the host's close, visibleChanged"});
    names += "ShowLogin whenever the window closes";
    addRows(names);
}

void TestE2eSurvival::closingWindowMayBeAnswered()
{
    run();
}

void TestE2eSurvival::updateMayBeAnswered_data()
{
    addRows(combine({"Shutdown", "Initialize"}, " at ",
                    {"needUpdate", "latestVersionChanged", "changeLogChanged", "readyUpdateInfo of a check",
                     "readyUpdateInfo of a failed download", "downloadStarted", "downloadProgress",
                     "downloadFinished", "upgradeStart", "upgradeProcess of the end", "upgradeEnd",
                     "readyUpdateInfo of the end"}));
}

void TestE2eSurvival::updateMayBeAnswered()
{
    run();
}

QTEST_GUILESS_MAIN(TestE2eSurvival)
#include "test_e2e_survival.moc"
