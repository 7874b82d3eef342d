#pragma once

#include <QByteArray>

#include <functional>

namespace Bench {

//! A line of this process's status, such as "VmHWM", in bytes; 0 where the system has no such file.
double statusBytes(const QByteArray& name);

//! How far such a line rises above its present value while `work` runs, as seen every millisecond.
double growthDuring(const QByteArray& name, const std::function<void()>& work);

} // namespace Bench
