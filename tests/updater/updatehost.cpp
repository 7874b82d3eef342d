//! \file
//! \brief A small host that updates itself. A test installs it in its own directory.
//!
//! updatehost STEP [URL TOKEN PRODUCT]: the step is "version", "check", "download", "upgrade" or "cover".
//! With a URL, each step begins with a check. "version" and "check" then end the host. "download" continues
//! with the upgrade, and the upgrade with the cover. The host writes each signal and each log line to the
//! standard output at once, with the state of the installation's files and settings at that moment.
//!
//! With other arguments or none, as when the batch file starts it, the host writes their number to
//! NAME.started beside itself and ends.

#include "tests/support/files.h"
#include "tests/updater/hostvoice.h"
#include "updater/updater.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTextCodec>
#include <QTimer>
#include <QTimerEvent>

namespace {

QString inAppDir(const char* name)
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
}

QJsonObject jsonOf(const char* name)
{
    return TestSupport::jsonOf(inAppDir(name));
}

void saySignals(CUpdater& updater)
{
    QObject::connect(&updater, &CUpdater::needUpdate,
                     [](bool need) { say(QStringLiteral("needUpdate %1").arg(need)); });
    QObject::connect(&updater, &CUpdater::localVersionChanged, [] { say("localVersionChanged"); });
    QObject::connect(&updater, &CUpdater::latestVersionChanged, [] { say("latestVersionChanged"); });
    QObject::connect(&updater, &CUpdater::changeLogChanged, [] { say("changeLogChanged"); });
    QObject::connect(&updater, &CUpdater::readyUpdateInfo, [](const QString& info) { say("info " + info); });
    QObject::connect(&updater, &CUpdater::downloadStarted, [] { say("downloadStarted"); });
    QObject::connect(&updater, &CUpdater::downloadFinished, [] { say("downloadFinished"); });
    QObject::connect(&updater, &CUpdater::upgradeStart, [] { say("upgradeStart"); });
    QObject::connect(&updater, &CUpdater::upgradeProcess,
                     [](float percent) { say(QStringLiteral("upgradeProcess %1").arg(percent)); });
    QObject::connect(&updater, &CUpdater::upgradeEnd, [] { say("upgradeEnd"); });
}

} // namespace

QString knowledge()
{
    const QSettings settings(QSettings::NativeFormat, QSettings::UserScope,
                             QCoreApplication::organizationName(), QCoreApplication::applicationName());
    return QStringLiteral("settings=%1 config=%2 history=%3 state=%4 batch=%5")
        .arg(settings.value("version").toString(), jsonOf("updateConfig.json").value("version").toString())
        .arg(QFile::exists(inAppDir("NelvoUpdateLog.txt")))
        .arg(jsonOf("NelvoUpdateState.dat").value("updateState").toInt())
        .arg(QFile::exists(inAppDir("cover.bat")));
}

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("NelvoTests"));
    QCoreApplication::setApplicationName(qEnvironmentVariable("NELVO_TEST_SETTINGS"));
    // The encoding that the test requests, otherwise the system's own.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(qgetenv("NELVO_TEST_CODEC")));
    const QStringList arguments = QCoreApplication::arguments();
    const QString step = arguments.value(1);
    if (!QStringList{"version", "check", "download", "upgrade", "cover"}.contains(step))
        return leaveTrace();
    qInstallMessageHandler(sayMessage);

    CUpdater updater;
    saySignals(updater);
    const auto start = [&] {
        if (arguments.size() == 5)
            updater.checkVersion(arguments[2], arguments[3], arguments[4]);
        if (step == "version" || step == "check")
            QCoreApplication::quit();
        else if (step == "download")
            updater.download();
        else if (step == "upgrade")
            updater.upgrade();
        else if (step == "cover")
            QMetaObject::invokeMethod(&updater, "doCover");
    };
    QObject::connect(&updater, &CUpdater::downloadFinished, &updater, &CUpdater::upgrade);

    // Measures how long the end is shown, and counts timer events meanwhile. A late event of the updater's
    // timer must not change the progress.
    QElapsedTimer sinceTheEnd;
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&ticks] { ++ticks; });
    QObject::connect(&updater, &CUpdater::upgradeEnd, [&] {
        ticks = 0;
        sinceTheEnd.start();
        QTimer::singleShot(1000, &updater, [&updater] {
            say(QStringLiteral("timers %1")
                    .arg(QAbstractEventDispatcher::instance()->registeredTimers(&updater).size()));
            QTimerEvent late(0);
            QCoreApplication::sendEvent(&updater, &late);
        });
    });
    ticker.start(50);

    QTimer::singleShot(0, start);
    const int code = QCoreApplication::exec();
    if (sinceTheEnd.isValid())
        say(QStringLiteral("shown %1 %2").arg(sinceTheEnd.elapsed()).arg(ticks));
    say("left with " + updater.localVersion());
    return code;
}
