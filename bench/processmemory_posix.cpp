#include "bench/processmemory.h"

#include <QByteArray>
#include <QFile>

namespace Bench {

namespace {

//! A value from /proc/self/status, converted to bytes. Other systems than Linux do not have this file.
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

} // namespace

double residentBytes()
{
    return statusBytes("VmRSS");
}

double peakResidentBytes()
{
    return statusBytes("VmHWM");
}

double ownBytes()
{
    return statusBytes("RssAnon");
}

} // namespace Bench
