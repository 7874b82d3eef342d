#include "bench/processortime.h"

#include <ctime>

namespace Bench {

namespace {

double seconds(clockid_t clock)
{
    constexpr double nanosecond = 1e-9;
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + nanosecond * static_cast<double>(time.tv_nsec);
}

} // namespace

double processorSeconds()
{
    return seconds(CLOCK_PROCESS_CPUTIME_ID);
}

double threadSeconds()
{
    return seconds(CLOCK_THREAD_CPUTIME_ID);
}

} // namespace Bench
