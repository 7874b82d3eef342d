#pragma once

#include <QStringList>
#include <QVector>

#include <functional>

namespace Bench {

//! Milliseconds that `work` takes.
double milliseconds(const std::function<void()>& work);
//! Milliseconds that a processor works for it on the calling thread, whatever else the machine does.
double processorMilliseconds(const std::function<void()>& work);
double median(QVector<double> values);
//! Runs a program to its end and returns its output. If it fails, the benchmark fails.
QByteArray outputOf(const QString& program, const QStringList& arguments);

// Each function prints one line and appends it as a row to the file that the variable NELVO_BENCH_TABLE
// names. A bound of 0 means that there is no bound.

//! Prints a figure, its peer, and their ratio, which the bound limits.
void printRatio(const char* name, double own, double other, const char* unit, double bound);
//! Prints a figure, which the bound limits.
void printFigure(const char* name, double value, const char* unit, double bound);
//! Prints a figure for each size, and the ratio of each figure to the previous one.
void printScaling(const char* name, const QVector<int>& sizes, const QVector<double>& values,
                  const char* unit);

} // namespace Bench
