#include "bench/processortime.h"

#include <windows.h>

namespace Bench {

namespace {

double seconds(const FILETIME& time)
{
    constexpr double unit = 1e-7;
    return unit * static_cast<double>(ULARGE_INTEGER{{time.dwLowDateTime, time.dwHighDateTime}}.QuadPart);
}

} // namespace

double processorSeconds()
{
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    return seconds(kernel) + seconds(user);
}

double threadSeconds()
{
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
    return seconds(kernel) + seconds(user);
}

} // namespace Bench
