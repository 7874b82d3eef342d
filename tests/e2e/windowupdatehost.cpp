//! \file
//! \brief A minimal host that updates itself through the built library, in its login window.
//!
//! e2e_windowupdatehost STEP URL TOKEN PRODUCT: STEP is the last step, "check", "download", "commitment" or
//! "update". The host clicks the pages' buttons as a user does and makes the calls that the library leaves to
//! a host. It prints every signal and every log line immediately, with the visible page. After a check it
//! ends, after a download it waits until it is killed, and after the new version has been recorded it ends
//! without output, as after a crash. Without arguments, as the batch file starts it, it creates NAME.started
//! beside itself and ends.

#include "tests/e2e/pluginhost.h"
#include "tests/e2e/updatepages.h"
#include "tests/updater/hostvoice.h"
#include "userinput/userinput.h"

#include <NelvoSDK/ILoginMgr.h>

#include <QGuiApplication>
#include <QTimer>
#include <QtTest>

#include <cstdlib>

namespace {

//! \brief Runs the steps and prints the updater's signals.
class Updating : public QObject
{
    Q_OBJECT

public:
    explicit Updating(const QStringList& arguments) : m_arguments(arguments)
    {
        const QObject* updater = E2e::updater();
        connect(updater, SIGNAL(needUpdate(bool)), SLOT(onNeedUpdate(bool)));
        connect(updater, SIGNAL(readyUpdateInfo(QString)), SLOT(onInfo(QString)));
        connect(updater, SIGNAL(downloadStarted(QString, qint64)), SLOT(onDownloadStarted()));
        connect(updater, SIGNAL(downloadFinished(QString)), SLOT(onDownloadFinished()));
        connect(updater, SIGNAL(upgradeStart()), SLOT(onUpgradeStart()));
        connect(updater, SIGNAL(upgradeProcess(float)), SLOT(onUpgradeProcess(float)));
        connect(updater, SIGNAL(upgradeEnd()), SLOT(onUpgradeEnd()));
    }

public Q_SLOTS:
    void start()
    {
        E2e::plugin()->GetLoginMgr()->Start();
        if (!UserInput::activate(E2e::loginWindow()))
            qFatal("the login window doesn't show");
        E2e::checkVersion(m_arguments.value(2), m_arguments.value(3), m_arguments.value(4));
        if (step() == "check")
            QCoreApplication::quit();
    }

private Q_SLOTS:
    void onNeedUpdate(bool need)
    {
        say(QStringLiteral("needUpdate %1").arg(need));
        if (need && step() != "check")
            QTimer::singleShot(0, this, &Updating::download);
    }
    void onInfo(const QString& info) { say("info " + info); }
    void onDownloadStarted() { say("downloadStarted"); }
    void onDownloadFinished()
    {
        say("downloadFinished");
        if (step() != "download")
            QTimer::singleShot(0, this, &Updating::upgrade);
    }
    void onUpgradeStart() { say("upgradeStart"); }
    void onUpgradeProcess(float percent)
    {
        const QQuickItem* bar = E2e::pagePart("progress");
        say(QStringLiteral("upgradeProcess %1").arg(percent));
        if (bar && percent >= 1)
            say(QStringLiteral("bar at %1").arg(bar->property("value").toDouble()));
    }
    void onUpgradeEnd()
    {
        say("upgradeEnd");
        if (step() == "commitment")
            std::_Exit(EXIT_FAILURE);
    }

private:
    QString step() const { return m_arguments.value(1); }

    //! The pages' own calls fail, as is known, so the host makes them instead.
    void download()
    {
        clickPart(QStringLiteral("upgradeButton"));
        E2e::callUpdater("download");
    }
    void upgrade()
    {
        clickPart(QStringLiteral("installButton"));
        E2e::callUpdater("upgrade");
    }
    static void clickPart(const QString& name)
    {
        if (!QTest::qWaitFor([&name] { return E2e::pagePart(name) != nullptr; }))
            qFatal("there is no %s", qUtf8Printable(name));
        UserInput::click(E2e::pagePart(name));
    }

    const QStringList m_arguments;
};

} // namespace

//! The visible page.
QString knowledge()
{
    return E2e::shownPage();
}

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    if (QCoreApplication::arguments().size() == 1)
        return leaveTrace();
    QCoreApplication::setOrganizationName(QStringLiteral("NelvoTests"));
    QCoreApplication::setApplicationName(qEnvironmentVariable("NELVO_TEST_SETTINGS"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    qInstallMessageHandler(sayMessage);

    E2e::plugin()->Initialize();
    int code = 0;
    {
        Updating updating(QCoreApplication::arguments());
        QTimer::singleShot(0, &updating, &Updating::start);
        code = QGuiApplication::exec();
        say("left with " + E2e::updater()->property("localVersion").toString());
    }
    E2e::plugin()->Shutdown();
    return code;
}

#include "windowupdatehost.moc"
