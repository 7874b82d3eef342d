#include "bench/measure.h"
#include "tests/e2e/pluginhost.h"
#include "tests/support/messagelog.h"

#include <QGuiApplication>
#include <QMap>
#include <QQuickView>

#include <atomic>
#include <chrono>
#include <cstdio>

//! Compares the time from loading the library to the first frame of the login window with two views that
//! import the same modules: one with a text, a picture and a rectangle, whose first use in a process takes
//! long, and an empty one. Each start is a separate process, and the three kinds of starts alternate.

namespace {

const auto Plugin = QStringLiteral("plugin");
const auto Floor = QStringLiteral("Floor");
const auto Empty = QStringLiteral("Empty");

using Clock = std::chrono::steady_clock;

int finishAtFirstFrame(QQuickWindow* window, Clock::time_point start)
{
    std::atomic<double> elapsed = 0;
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window,
        [&elapsed, start] {
            if (elapsed == 0)
                elapsed = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        },
        Qt::DirectConnection); // runs on the rendering thread
    const int status = QCoreApplication::exec();
    std::printf("%f\n", elapsed.load());
    return status;
}

int startPlugin()
{
    const auto start = Clock::now();
    const E2e::PluginHost host(QStringLiteral("http://127.0.0.1:9"));
    E2e::plugin()->GetLoginMgr()->Start();
    const TestSupport::MessageLog log; // hides the warning of the logout without a sign-in
    return finishAtFirstFrame(host.window(), start);
}

int startView(const QString& name)
{
    const auto start = Clock::now();
    QQuickView view;
    view.setFlags(view.flags() | Qt::FramelessWindowHint);
    view.setSource(QUrl(QStringLiteral("qrc:/bench/%1.qml").arg(name)));
    view.show();
    return finishAtFirstFrame(&view, start);
}

double startIn(const QString& mode)
{
    // Two arguments, because the library reads a single argument as a sign-in from the command line.
    const QStringList arguments{QStringLiteral("--start"), mode};
    return Bench::outputOf(QCoreApplication::applicationFilePath(), arguments).trimmed().toDouble();
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.contains(Plugin))
        return startPlugin();
    for (const QString& name : {Floor, Empty}) {
        if (arguments.contains(name))
            return startView(name);
    }

    constexpr int rounds = 15;
    const QStringList modes{Plugin, Floor, Empty};
    QMap<QString, QVector<double>> times;
    for (const QString& mode : modes)
        startIn(mode);
    for (int round = 0; round < rounds; ++round) {
        for (const QString& mode : modes)
            times[mode].append(startIn(mode));
    }
    const double own = Bench::median(times[Plugin]);
    Bench::printRatio("load to first frame / view with three items", own, Bench::median(times[Floor]), "ms",
                      1.15);
    Bench::printRatio("load to first frame / empty view", own, Bench::median(times[Empty]), "ms", 0);
    return 0;
}
