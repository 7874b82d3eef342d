#include "bench/processortime.h"

#include <ctime>

namespace Bench {

double processorSeconds()
{
    constexpr double nanosecond = 1e-9;
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + nanosecond * static_cast<double>(time.tv_nsec);
}

} // namespace Bench
