#include "bench/processmemory.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace Bench {

double statusBytes(const QByteArray& name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith(name + ':'))
            return 1024 * line.mid(name.size() + 1).simplified().split(' ').constFirst().toDouble();
    }
    return 0;
}

double growthDuring(const QByteArray& name, const std::function<void()>& work)
{
    const double before = statusBytes(name);
    double most = before;
    std::atomic<bool> done = false;
    std::thread watch([&] {
        while (!done) {
            most = std::max(most, statusBytes(name));
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    work();
    done = true;
    watch.join();
    return most - before;
}

} // namespace Bench
