#include "bench/processmemory.h"

#include <windows.h>

#include <psapi.h>

namespace Bench {

namespace {

PROCESS_MEMORY_COUNTERS counters()
{
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters;
}

} // namespace

double residentBytes()
{
    return static_cast<double>(counters().WorkingSetSize);
}

double peakResidentBytes()
{
    return static_cast<double>(counters().PeakWorkingSetSize);
}

double ownBytes()
{
    return static_cast<double>(counters().PagefileUsage);
}

} // namespace Bench
