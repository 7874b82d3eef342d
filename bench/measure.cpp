#include "bench/measure.h"

#include <QProcess>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace Bench {

namespace {

const char* verdict(double value, double bound)
{
    return value <= bound ? "within" : "OVER";
}

} // namespace

double milliseconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count();
}

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    const int middle = values.size() / 2;
    return values.size() % 2 == 1 ? values.at(middle) : (values.at(middle - 1) + values.at(middle)) / 2;
}

QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("%s failed: %s", qUtf8Printable(program), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

void printRatio(const char* name, double own, double other, const char* unit, double bound)
{
    const double ratio = own / other;
    if (bound > 0) {
        std::printf("%-46s %9.2f / %9.2f %s = %5.2f   %s the bound of %.2f\n", name, own, other, unit, ratio,
                    verdict(ratio, bound), bound);
    } else {
        std::printf("%-46s %9.2f / %9.2f %s = %5.2f\n", name, own, other, unit, ratio);
    }
    std::fflush(stdout);
}

void printFigure(const char* name, double value, const char* unit, double bound)
{
    std::printf("%-46s %9.2f %s   %s the bound of %.2f\n", name, value, unit, verdict(value, bound), bound);
    std::fflush(stdout);
}

} // namespace Bench
