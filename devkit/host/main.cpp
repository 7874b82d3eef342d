#include "commandline/commandline.h"
#include "host/editor.h"
#include "host/hostoptions.h"
#include "host/hostsettings.h"
#include "host/logfilter.h"
#include "host/logmodel.h"
#include "host/messagecapture.h"
#include "host/modeldatabase.h"
#include "host/webchannelserver.h"

#include <NelvoSDK/LoadPlugin.h>

#include <QFileInfo>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickItem>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace {

using namespace NelvoDevkit;

//! A single argument is for the plug-in. Prints a hint if it does not have the parts of a sign-in.
void explainSingleArgument(const QStringList& arguments)
{
    if (arguments.size() == 2 && arguments.at(1).startsWith(QLatin1Char('-')) &&
        !arguments.at(1).contains(QStringLiteral("$$"))) {
        errorOutput() << "NelvoEditor: '" << arguments.at(1) << "' goes to the plug-in, as a sign-in\n"
                      << HostOptions::usage() << Qt::flush;
    }
}

//! The terminal has its own code page, which may differ from the codec in the settings. Any thread may log.
void writeMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    std::cerr << qFormatLogMessage(type, context, message).toStdString() << std::endl;
}

HostSettings applySettings(const QString& givenFile)
{
    const QString ownFile = QCoreApplication::applicationDirPath() + QStringLiteral("/NelvoEditor.json");
    if (givenFile.isEmpty() && !QFileInfo::exists(ownFile))
        return {};
    const QString file = givenFile.isEmpty() ? ownFile : givenFile;
    QString error;
    const auto settings = HostSettings::load(file, &error);
    if (!settings)
        throw Failure{QStringLiteral("settings %1: %2").arg(file, error)};
    settings->apply();
    if (settings->codec)
        qInstallMessageHandler(writeMessage);
    return *settings;
}

void loadModels(LogModel& log)
{
    QString error;
    if (!loadModelDatabase(QCoreApplication::applicationDirPath(), &error))
        log.append({LogEntry::Kind::Warning, QStringLiteral("no PDS projects: ") + error, {}});
}

void startWebChannel(WebChannelServer& server, LogModel& log)
{
    QString error;
    if (server.start(&error))
        log.append({LogEntry::Kind::Host, QStringLiteral("web channel: ") + server.pageUrl().toString(), {}});
    else
        log.append({LogEntry::Kind::Warning, QStringLiteral("no web channel: ") + error, {}});
}

bool isAnyWindowVisible()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(),
                       [](const QWindow* window) { return window->isVisible(); });
}

void start(Editor& editor)
{
    editor.start();
    if (isAnyWindowVisible())
        return;
    // A sign-in from the command line failed, and no window exists that could end this process.
    errorOutput() << "NelvoEditor: the sign-in opened no window" << Qt::endl;
    QCoreApplication::exit(EXIT_FAILURE);
}

void checkUpdates(Editor& editor, const QString& when)
{
    if (when == CheckAtStart)
        editor.updates()->check();
    else if (when == CheckAtSignIn)
        QObject::connect(&editor, &Editor::sessionChanged, editor.updates(), [&editor] {
            if (editor.isSignedIn())
                editor.updates()->check();
        });
}

int run(const HostOptions& options)
{
    const HostSettings settings = applySettings(options.settingsFile);

    QString error;
    NelvoSDK::INelvoSDKPlugin* const plugin =
        NelvoSDK::LoadPlugin(QCoreApplication::applicationDirPath(), &error);
    if (!plugin)
        throw Failure{error};

    LogModel log;
    const MessageCapture capture(log);
    LogFilter shownLog(log);
    loadModels(log);
    WebChannelServer webChannel;
    startWebChannel(webChannel, log);
    Editor editor(*plugin, log, webChannel.channel());
    editor.updates()->setService(settings.updateService);

    qmlRegisterUncreatableType<LogFilter>("NelvoEditor", 1, 0, "LogFilter",
                                          QStringLiteral("the host has one"));
    qmlRegisterUncreatableType<UpdateDesk>("NelvoEditor", 1, 0, "UpdateDesk",
                                           QStringLiteral("the host has one"));
    QQmlApplicationEngine engine;
    editor.publish(engine.rootContext());
    engine.setInitialProperties({{QStringLiteral("editor"), QVariant::fromValue(&editor)},
                                 {QStringLiteral("log"), QVariant::fromValue(&shownLog)},
                                 {QStringLiteral("webChannelPage"), webChannel.pageUrl()}});
    engine.load(QUrl(QStringLiteral("qrc:/NelvoEditor/Main.qml")));
    if (engine.rootObjects().isEmpty())
        throw Failure{QStringLiteral("the host's window did not load")};
    editor.models()->createDialog(
        engine.rootObjects().constFirst()->findChild<QQuickItem*>(QStringLiteral("scene")));

    QTimer::singleShot(0, &editor, [&] {
        start(editor);
        checkUpdates(editor, options.updateCheck);
    });
    const int status = QGuiApplication::exec();
    editor.models()->destroyDialog();
    return status;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    const QGuiApplication application(argc, argv);
    // The plug-in stores the installed version in settings with these names.
    QCoreApplication::setOrganizationName(QStringLiteral("Nelvo"));
    return runProgram("NelvoEditor", [] {
        explainSingleArgument(QCoreApplication::arguments());
        const auto options = HostOptions::parse(QCoreApplication::arguments());
        return options ? run(*options) : EXIT_SUCCESS;
    });
}
