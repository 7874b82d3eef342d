#pragma once

#include <functional>

namespace Bench {

// This process's memory, in bytes; 0 where the system doesn't say.

//! What is in the machine's memory now.
double residentBytes();
//! The most that there has been of that.
double peakResidentBytes();
//! What is this process's own: no file that it maps, and nothing that it shares.
double ownBytes();

//! How far such a figure rises above its present value while `work` runs, as seen every millisecond.
double growthDuring(double (*figure)(), const std::function<void()>& work);

} // namespace Bench
