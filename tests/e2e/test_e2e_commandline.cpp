#include "launch/callerhandshake.h"
#include "launch/launcher.h"
#include "tests/e2e/pluginhost.h"
#include "tests/support/accounts.h"
#include "tests/support/files.h"
#include "tests/support/startedservices.h"

#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QUuid>
#include <QtTest>

using NelvoDevkit::CallerHandshake;
using NelvoDevkit::Fault;
using NelvoDevkit::LaunchStatus;
using TestSupport::md5;
using TestSupport::passwordOf;

namespace {

constexpr int PatienceMs = 60000;
constexpr std::chrono::milliseconds Patience{PatienceMs};
constexpr std::chrono::milliseconds Now{0};

//! Set in a process that acts as the host: the file for its report.
const char* const ReportVariable = "NELVO_TEST_REPORT";
//! If this is set too, the host continues after a success until it is killed.
const char* const StayVariable = "NELVO_TEST_STAY";

bool isAnyWindowVisible()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(),
                       [](const QWindow* window) { return window->isVisible(); });
}

//! The current data of the host.
QByteArray report(const E2e::PluginHost& host)
{
    const NelvoSDK::LoginSession session =
        host.observer.sessions.isEmpty() ? NelvoSDK::LoginSession{} : host.observer.sessions.constLast();
    return QJsonDocument(QJsonObject{
                             {"sessions", host.observer.sessions.size()},
                             {"failures", host.observer.failures},
                             {"loggedIn", session.loggedIn},
                             {"sdkAddr", QString::fromStdWString(session.sdkAddr)},
                             {"serverAddr", QString::fromStdWString(session.serverAddr)},
                             {"epName", QString::fromStdWString(session.epName)},
                             {"epId", QString::fromStdWString(session.extra.count(L"epId") != 0
                                                                  ? session.extra.at(L"epId")
                                                                  : std::wstring())},
                             {"cookies", QString::fromStdWString(session.cookies)},
                             {"window", isAnyWindowVisible()},
                             {"cache", host.cache.exists()},
                         })
        .toJson();
}

void write(const QString& name, const QByteArray& content)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(name));
}

//! A minimal host with a sign-in from the command line. It writes the calls of its observer to a file
//! immediately, and ends unless it should continue.
int runHost(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    E2e::PluginHost host(QStringLiteral("http://default"));
    const QString file = qEnvironmentVariable(ReportVariable);
    host.observer.whenSucceeded = [&] { write(file, report(host)); };
    QTimer::singleShot(0, qApp, [] {
        E2e::plugin()->GetLoginMgr()->Start();
        if (!qEnvironmentVariableIsSet(StayVariable))
            QCoreApplication::exit();
    });
    QTimer::singleShot(4 * PatienceMs, qApp, &QCoreApplication::quit);
    return QGuiApplication::exec();
}

} // namespace

//! Another program starts a host with a sign-in and waits for the event.
class TestE2eCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void signsInWithoutAWindow();
    void sessionIsThereWhenTheCallerHearsOfIt();
    void bareHostAndPortGetAScheme();
    void upperCaseSchemeIsNone();
    void namesMayHoldAnyCharacters();
    void unknownEnterpriseIsEnteredWithoutAName();
    void clearPasswordIsRefused();
    void failedSignInIsToldAllTheSame();
    void failedSignInEndsTheHost();
    void withoutNamesNothingIsTold();
    void missingMappingStillWakesTheCaller();
    void missingEventLeavesTheCallerAsleep();
    void argumentOfAnotherFormEndsTheHost();
    void callerWaitsForAServiceThatStalls();

    void launcherSignsIn();
    void launcherHearsNothingFromAStalledSignIn();

private:
    //! The argument with the names of the calling program.
    QString argument(const QString& user, const QString& pwd, const QString& url, const QString& epId) const;
    QString argument(const QString& user = QStringLiteral("lina")) const;
    void start(const QString& program, const QStringList& arguments);
    void startHost(const QString& argument);
    bool hostEnds();
    QJsonObject hostReport() const;
    QByteArrayList targets() const;

    TestSupport::StartedServices m_services;
    QString m_eventName;
    QString m_mappingName;
    std::unique_ptr<CallerHandshake> m_caller;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_host;
    QProcessEnvironment m_environment;
};

void TestE2eCommandLine::init()
{
    m_services.reset();
    m_services.forgetSessions();
    const QString unique = QUuid::createUuid().toString(QUuid::WithoutBraces);
    m_eventName = QStringLiteral("event-") + unique;
    m_mappingName = QStringLiteral("mapping-") + unique;
    m_caller = std::make_unique<CallerHandshake>(m_eventName.toStdWString(), m_mappingName.toStdWString());
    m_folder = std::make_unique<QTemporaryDir>();
    m_host = std::make_unique<QProcess>();
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(QLatin1String(ReportVariable), m_folder->filePath(QStringLiteral("report")));
}

void TestE2eCommandLine::cleanup()
{
    m_services.clearFaults();
    if (m_host->state() != QProcess::NotRunning) {
        m_host->kill();
        m_host->waitForFinished(PatienceMs);
    }
    if (QTest::currentTestFailed())
        qInfo("%s", m_host->readAllStandardError().constData());
    m_host.reset();
    m_caller.reset();
}

QString TestE2eCommandLine::argument(const QString& user, const QString& pwd, const QString& url,
                                     const QString& epId) const
{
    return QStringList{user, pwd, url, m_eventName, m_mappingName, epId}.join(QStringLiteral("$$"));
}

QString TestE2eCommandLine::argument(const QString& user) const
{
    return argument(user, md5(passwordOf(user).toUtf8()), m_services.signInUrl(), QStringLiteral("1003"));
}

void TestE2eCommandLine::start(const QString& program, const QStringList& arguments)
{
    m_host->setProcessEnvironment(m_environment);
    m_host->start(program, arguments);
    QVERIFY2(m_host->waitForStarted(PatienceMs), qPrintable(m_host->errorString()));
}

void TestE2eCommandLine::startHost(const QString& argument)
{
    start(QCoreApplication::applicationFilePath(), {argument});
}

bool TestE2eCommandLine::hostEnds()
{
    return m_host->state() == QProcess::NotRunning || m_host->waitForFinished(PatienceMs);
}

QJsonObject TestE2eCommandLine::hostReport() const
{
    return TestSupport::jsonOf(m_folder->filePath(QStringLiteral("report")));
}

QByteArrayList TestE2eCommandLine::targets() const
{
    QByteArrayList lines;
    const QVector<NelvoDevkit::LoggedRequest> requests = m_services.log().requests();
    for (const NelvoDevkit::LoggedRequest& request : requests) {
        if (request.path() != "/login/success")
            lines.append(request.method + ' ' + request.target);
    }
    return lines;
}

void TestE2eCommandLine::signsInWithoutAWindow()
{
    startHost(argument());
    QVERIFY(m_caller->wait(Patience));
    QCOMPARE(m_caller->text(), std::string("1"));
    QVERIFY(hostEnds());
    QCOMPARE(m_host->exitCode(), 0);
    const QJsonObject seen = hostReport();
    QCOMPARE(seen["sessions"].toInt(), 1);
    QCOMPARE(seen["failures"].toInt(), 0);
    QCOMPARE(seen["loggedIn"].toBool(), true);
    QCOMPARE(seen["epName"].toString(), QStringLiteral("江南水利工程局"));
    QCOMPARE(seen["epId"].toString(), QStringLiteral("1003"));
    QCOMPARE(seen["sdkAddr"].toString(), m_services.editorUrl());
    QCOMPARE(seen["serverAddr"].toString(), m_services.editorUrl() + QStringLiteral("/proxy"));
    QVERIFY(seen["cookies"].toString().contains(QStringLiteral("EDITORSESSION=")));
    QCOMPARE(seen["window"].toBool(true), false);
    QCOMPARE(seen["cache"].toBool(true), false);
    QCOMPARE(targets(), (QByteArrayList{"GET /login", "POST /login", "GET /rs/casLogin/listCompany",
                                        "POST /rs/casLogin/casLogin", "GET /rs/casLogin/serverUrl",
                                        "GET /rs/cim/nelvo/client_token", "GET /org/heartbeat",
                                        "GET /rs/casLogin/logout"}));
}

void TestE2eCommandLine::sessionIsThereWhenTheCallerHearsOfIt()
{
    m_environment.insert(QLatin1String(StayVariable), QStringLiteral("1"));
    startHost(argument());
    QVERIFY(m_caller->wait(Patience));
    QCOMPARE(hostReport()["sessions"].toInt(), 1);
    QVERIFY(m_host->state() != QProcess::NotRunning);
}

void TestE2eCommandLine::bareHostAndPortGetAScheme()
{
    const QString bare = m_services.signInUrl().remove(QStringLiteral("http://"));
    startHost(argument(QStringLiteral("lina"), md5(passwordOf(QStringLiteral("lina")).toUtf8()), bare,
                       QStringLiteral("1003")));
    QVERIFY(m_caller->wait(Patience));
    QCOMPARE(hostReport()["sdkAddr"].toString(), m_services.editorUrl());
}

void TestE2eCommandLine::upperCaseSchemeIsNone()
{
    const QString upper =
        m_services.signInUrl().replace(QStringLiteral("http://"), QStringLiteral("HTTP://"));
    startHost(argument(QStringLiteral("lina"), md5(passwordOf(QStringLiteral("lina")).toUtf8()), upper,
                       QStringLiteral("1003")));
    QVERIFY(m_caller->wait(Patience));
    QCOMPARE(hostReport()["failures"].toInt(), 1);
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestE2eCommandLine::namesMayHoldAnyCharacters()
{
    m_eventName += QStringLiteral(" 登录/事件 100% \U0001F3D7");
    m_mappingName += QStringLiteral(" größe/映射");
    m_caller = std::make_unique<CallerHandshake>(m_eventName.toStdWString(), m_mappingName.toStdWString());
    startHost(argument(QStringLiteral("陈晓明")));
    QVERIFY(m_caller->wait(Patience));
    QCOMPARE(m_caller->text(), std::string("1"));
    QCOMPARE(hostReport()["failures"].toInt(-1), 0);
}

void TestE2eCommandLine::unknownEnterpriseIsEnteredWithoutAName()
{
    startHost(argument(QStringLiteral("lina"), md5(passwordOf(QStringLiteral("lina")).toUtf8()),
                       m_services.signInUrl(), QStringLiteral("77")));
    QVERIFY(m_caller->wait(Patience));
    QCOMPARE(hostReport()["epName"].toString(), QString());
    QCOMPARE(hostReport()["epId"].toString(), QStringLiteral("77"));
}

//! It is sent unchanged, without a digest.
void TestE2eCommandLine::clearPasswordIsRefused()
{
    startHost(argument(QStringLiteral("lina"), passwordOf(QStringLiteral("lina")), m_services.signInUrl(),
                       QStringLiteral("1003")));
    QVERIFY(m_caller->wait(Patience));
    QVERIFY(m_services.log().requests().at(1).body.endsWith("&password=lina2024"));
    QCOMPARE(hostReport()["failures"].toInt(), 1);
}

//! The calling program cannot distinguish it from a success.
void TestE2eCommandLine::failedSignInIsToldAllTheSame()
{
    startHost(argument(QStringLiteral("nobody")));
    QVERIFY(m_caller->wait(Patience));
    QCOMPARE(m_caller->text(), std::string("1"));
    const QJsonObject seen = hostReport();
    QCOMPARE(seen["failures"].toInt(), 1);
    QCOMPARE(seen["sessions"].toInt(), 1);
    QCOMPARE(seen["loggedIn"].toBool(), true);
    QCOMPARE(seen["sdkAddr"].toString(QStringLiteral("x")), QString());
    QVERIFY(hostEnds());
    QVERIFY(m_host->readAllStandardError().contains("login failed: read compList failed"));
}

void TestE2eCommandLine::failedSignInEndsTheHost()
{
    m_environment.insert(QLatin1String(StayVariable), QStringLiteral("1"));
    startHost(argument(QStringLiteral("nobody")));
    QVERIFY(hostEnds());
    QCOMPARE(m_host->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_host->exitCode(), 0);
    QVERIFY(m_caller->wait(Now));
}

void TestE2eCommandLine::withoutNamesNothingIsTold()
{
    const QString user = QStringLiteral("lina");
    startHost(QStringList{
        user, md5(passwordOf(user).toUtf8()), m_services.signInUrl(), {}, {}, QStringLiteral("1003")}
                  .join(QStringLiteral("$$")));
    QVERIFY(hostEnds());
    QCOMPARE(hostReport()["epId"].toString(), QStringLiteral("1003"));
    QVERIFY(!m_caller->wait(Now));
    QCOMPARE(m_caller->text(), std::string());
}

void TestE2eCommandLine::missingMappingStillWakesTheCaller()
{
    m_mappingName += QStringLiteral("-missing");
    startHost(argument());
    QVERIFY(m_caller->wait(Patience));
    QCOMPARE(m_caller->text(), std::string());
}

void TestE2eCommandLine::missingEventLeavesTheCallerAsleep()
{
    m_eventName += QStringLiteral("-missing");
    startHost(argument());
    QVERIFY(hostEnds());
    QVERIFY(!m_caller->wait(Now));
    QCOMPARE(m_caller->text(), std::string("1"));
    QCOMPARE(hostReport()["epId"].toString(), QStringLiteral("1003"));
}

void TestE2eCommandLine::argumentOfAnotherFormEndsTheHost()
{
    m_environment.insert(QLatin1String(StayVariable), QStringLiteral("1"));
    startHost(argument() + QStringLiteral("$$"));
    QVERIFY(hostEnds());
    QCOMPARE(m_host->exitCode(), 0);
    QVERIFY(!m_caller->wait(Now));
    QCOMPARE(hostReport()["failures"].toInt(), 1);
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestE2eCommandLine::callerWaitsForAServiceThatStalls()
{
    m_services.addFault({Fault::Stall, QStringLiteral("/org/heartbeat"), {}, 0, false});
    startHost(argument());
    QTRY_VERIFY_WITH_TIMEOUT(targets().contains("GET /org/heartbeat"), PatienceMs);
    QVERIFY(!m_caller->wait(std::chrono::milliseconds(100)));
    QCOMPARE(m_caller->text(), std::string());
    m_services.clearFaults();
    QVERIFY(m_caller->wait(Patience));
    QCOMPARE(hostReport()["sessions"].toInt(), 1);
}

void TestE2eCommandLine::launcherSignsIn()
{
    m_environment.insert(QLatin1String(StayVariable), QStringLiteral("1"));
    start(QStringLiteral(NELVO_LAUNCH_PROGRAM),
          {"--user", "lina", "--password", passwordOf(QStringLiteral("lina")), "--url",
           m_services.signInUrl(), "--enterprise", "1003", "--host", QCoreApplication::applicationFilePath(),
           "--end"});
    QVERIFY(hostEnds());
    QCOMPARE(m_host->exitCode(), int(LaunchStatus::Signalled));
    QVERIFY(m_host->readAllStandardOutput().contains("nelvo-launch: the host says \"1\""));
    QCOMPARE(hostReport()["epName"].toString(), QStringLiteral("江南水利工程局"));
    QCOMPARE(hostReport()["window"].toBool(true), false);
}

void TestE2eCommandLine::launcherHearsNothingFromAStalledSignIn()
{
    m_services.addFault({Fault::Stall, QStringLiteral("/login"), {}, 0, false});
    start(QStringLiteral(NELVO_LAUNCH_PROGRAM),
          {"--user", "lina", "--md5", "x", "--url", m_services.signInUrl(), "--enterprise", "1003", "--host",
           QCoreApplication::applicationFilePath(), "--timeout", "1", "--end"});
    QVERIFY(hostEnds());
    QCOMPARE(m_host->exitCode(), int(LaunchStatus::TimedOut));
    QVERIFY(hostReport().isEmpty());
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet(ReportVariable))
        return runHost(argc, argv);
    QCoreApplication application(argc, argv);
    TestE2eCommandLine test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_e2e_commandline.moc"
