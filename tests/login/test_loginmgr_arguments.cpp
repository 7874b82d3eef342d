#include "login/loginmgr.h"

#include "tests/support/applicationfile.h"

#include <QGuiApplication>
#include <QProcess>
#include <QTextStream>
#include <QWindow>
#include <QtTest>

namespace {

bool anyWindowShown()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (const QWindow* window : windows) {
        if (window->isVisible())
            return true;
    }
    return false;
}

//! Environment variable that makes this program the application under test.
const char* const HostVariable = "NELVO_TEST_HOST";
const QByteArray Shown = "shown";
const QByteArray NotShown = "not shown";

//! Shows a window and waits until it is exposed. The system handles requests in order, so an earlier window
//! has been shown by then.
void showAWindowAndWait()
{
    QWindow window;
    window.resize(100, 100);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window, 60000))
        qFatal("the system shows no window");
}

//! The application under test: starts the sign-in and prints whether a window is shown.
int runHost(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    const TestSupport::ApplicationFile cache(QStringLiteral("loginchache.json"));
    NelvoPlugin::CLoginMgr manager;
    manager.Start();
    showAWindowAndWait();
    QTextStream(stdout) << (anyWindowShown() ? Shown : NotShown);
    return 0;
}

QByteArray start(const QStringList& arguments)
{
    QProcess host;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(HostVariable), QStringLiteral("1"));
    host.setProcessEnvironment(environment);
    host.start(QCoreApplication::applicationFilePath(), arguments);
    if (!host.waitForFinished(60000) || host.exitStatus() != QProcess::NormalExit)
        return host.readAllStandardError();
    return host.readAllStandardOutput();
}

} // namespace

//! How Start depends on the number of arguments. Each row runs in its own process.
class TestLoginMgrArguments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneArgumentNeverShowsAWindow_data();
    void oneArgumentNeverShowsAWindow();
    void otherNumbersShowTheWindow_data();
    void otherNumbersShowTheWindow();
};

void TestLoginMgrArguments::oneArgumentNeverShowsAWindow_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("anything") << QStringLiteral("x");
    QTest::newRow("empty") << QString();
    QTest::newRow("option") << QStringLiteral("--help");
}

void TestLoginMgrArguments::oneArgumentNeverShowsAWindow()
{
    QFETCH(QString, argument);
    QCOMPARE(start({argument}), NotShown);
}

void TestLoginMgrArguments::otherNumbersShowTheWindow_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("none") << QStringList{};
    QTest::newRow("two") << QStringList{"--settings", "file"};
    QTest::newRow("three") << QStringList{"a", "b", "c"};
}

void TestLoginMgrArguments::otherNumbersShowTheWindow()
{
    QFETCH(QStringList, arguments);
    QCOMPARE(start(arguments), Shown);
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet(HostVariable))
        return runHost(argc, argv);
    QCoreApplication application(argc, argv);
    TestLoginMgrArguments test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_loginmgr_arguments.moc"
