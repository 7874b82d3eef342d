#include "bench/measure.h"
#include "tests/e2e/pluginhost.h"
#include "tests/support/messagelog.h"

#include <QGuiApplication>
#include <QQuickView>

#include <atomic>
#include <chrono>
#include <cstdio>

//! From loading the library to the first frame of the login window, beside an empty view that imports the
//! same modules. Each start is a process of its own, the two in turns.

namespace {

const auto Plugin = QStringLiteral("plugin");
const auto Floor = QStringLiteral("floor");

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
        Qt::DirectConnection); // on the thread that renders, when it happens
    const int status = QCoreApplication::exec();
    std::printf("%f\n", elapsed.load());
    return status;
}

int startPlugin()
{
    const auto start = Clock::now();
    const E2e::PluginHost host(QStringLiteral("http://127.0.0.1:9"));
    E2e::plugin()->GetLoginMgr()->Start();
    const TestSupport::MessageLog log; // the logout without a sign-in warns
    return finishAtFirstFrame(host.window(), start);
}

int startFloor()
{
    const auto start = Clock::now();
    QQuickView view;
    view.setFlags(view.flags() | Qt::FramelessWindowHint);
    view.setSource(QUrl(QStringLiteral("qrc:/bench/Empty.qml")));
    view.show();
    return finishAtFirstFrame(&view, start);
}

double startIn(const QString& mode)
{
    // Two arguments: a single one would be a sign-in without a window.
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
    if (arguments.contains(Floor))
        return startFloor();

    constexpr int rounds = 15;
    QVector<double> own;
    QVector<double> floor;
    startIn(Plugin);
    startIn(Floor);
    for (int round = 0; round < rounds; ++round) {
        own.append(startIn(Plugin));
        floor.append(startIn(Floor));
    }
    Bench::printRatio("load to first frame / empty view", Bench::median(own), Bench::median(floor), "ms",
                      1.5);
    return 0;
}
