#pragma once

#include <QStringList>
#include <QVector>

#include <functional>

namespace Bench {

//! The milliseconds that `work` takes.
double milliseconds(const std::function<void()>& work);
//! The milliseconds of processor time that `work` takes on the calling thread. Other programs do not count.
double processorMilliseconds(const std::function<void()>& work);
double median(QVector<double> values);
//! Runs a program to its end and returns its output. If the program fails, the benchmark ends with its error
//! text.
QByteArray outputOf(const QString& program, const QStringList& arguments);

// Each function prints one line and appends it as a row to the file in the variable NELVO_BENCH_TABLE. A
// bound of 0 means that there is no bound. A figure over its bound is marked.

//! Prints a figure, the figure to compare it with, and their ratio. The bound applies to the ratio.
void printRatio(const char* name, double own, double other, const char* unit, double bound);
//! Prints a figure. The bound applies to the figure.
void printFigure(const char* name, double value, const char* unit, double bound);
//! Prints a figure for each size, and the ratio of each figure to the previous one.
void printScaling(const char* name, const QVector<int>& sizes, const QVector<double>& values,
                  const char* unit);

} // namespace Bench
