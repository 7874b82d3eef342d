#include "bench/measure.h"

#include "bench/processortime.h"

#include <QFile>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace Bench {

namespace {

//! Prints the row to the terminal and appends it to the table, if there is one.
void print(const char* name, const QString& figure, const QString& ratio, const QString& bound)
{
    std::printf("%-52s %-46s %8s   %s\n", name, qUtf8Printable(figure), qUtf8Printable(ratio),
                qUtf8Printable(bound));
    std::fflush(stdout);
    QFile table(qEnvironmentVariable("NELVO_BENCH_TABLE"));
    if (table.fileName().isEmpty())
        return;
    const QString row = QStringLiteral("| %1 | %2 | %3 | %4 |\n").arg(name, figure, ratio, bound);
    if (!table.open(QIODevice::Append) || table.write(row.toUtf8()) < 0)
        qFatal("cannot append a row to %s", qUtf8Printable(table.fileName()));
}

QString number(double value)
{
    return QString::number(value, 'f', 2);
}

QString verdict(double value, double bound)
{
    if (bound <= 0)
        return {};
    return (value <= bound ? QStringLiteral("%1") : QStringLiteral("%1 **over**")).arg(number(bound));
}

} // namespace

double milliseconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count();
}

double processorMilliseconds(const std::function<void()>& work)
{
    const double start = threadSeconds();
    work();
    return 1000 * (threadSeconds() - start);
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
    const auto figure = QStringLiteral("%1 / %2 %3").arg(number(own), number(other), unit);
    print(name, figure, number(own / other), verdict(own / other, bound));
}

void printFigure(const char* name, double value, const char* unit, double bound)
{
    print(name, QStringLiteral("%1 %2").arg(number(value), unit), {}, verdict(value, bound));
}

void printScaling(const char* name, const QVector<int>& sizes, const QVector<double>& values,
                  const char* unit)
{
    QStringList figures;
    QStringList ratios;
    for (int index = 0; index < sizes.size(); ++index) {
        figures.append(QStringLiteral("%1: %2 %3").arg(sizes.at(index)).arg(number(values.at(index)), unit));
        if (index > 0)
            ratios.append(QString::number(values.at(index) / values.at(index - 1), 'f', 1));
    }
    print(name, figures.join(QStringLiteral(", ")), ratios.join(QStringLiteral(", ")), {});
}

} // namespace Bench
