#pragma once

#include <functional>

namespace Bench {

// This process's memory, in bytes; 0 if the system does not provide it.

//! The part that is currently in main memory.
double residentBytes();
//! The maximum of this part so far.
double peakResidentBytes();
//! The private part: without mapped files and shared memory.
double ownBytes();

//! The maximum increase of `figure` while `work` runs, measured every millisecond.
double growthDuring(double (*figure)(), const std::function<void()>& work);

} // namespace Bench
