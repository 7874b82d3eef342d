#pragma once

#include <functional>

namespace Bench {

// The memory of this process in bytes; 0 if the system does not provide the figure.

//! The memory of the process that is currently in main memory.
double residentBytes();
//! The maximum of residentBytes() since the start of the process.
double peakResidentBytes();
//! The private memory: without mapped files and shared memory.
double ownBytes();

//! The maximum increase of `figure` during `work`, measured every millisecond on another thread.
double growthDuring(double (*figure)(), const std::function<void()>& work);

} // namespace Bench
