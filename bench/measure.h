#pragma once

#include <QStringList>
#include <QVector>

#include <functional>

namespace Bench {

//! Milliseconds that `work` takes.
double milliseconds(const std::function<void()>& work);
double median(QVector<double> values);
//! Runs a program to its end and returns what it wrote. If it fails, so does the measurement.
QByteArray outputOf(const QString& program, const QStringList& arguments);

//! Prints one line: the figure, what it stands beside, their ratio, and the bound that it is meant to keep.
void printRatio(const char* name, double own, double other, const char* unit, double bound);
//! Prints one line for a figure that is bounded by itself.
void printFigure(const char* name, double value, const char* unit, double bound);

} // namespace Bench
