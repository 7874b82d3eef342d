#include "bench/processmemory.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace Bench {

double growthDuring(double (*figure)(), const std::function<void()>& work)
{
    const double before = figure();
    double most = before;
    std::atomic<bool> done = false;
    std::thread watch([&] {
        while (!done) {
            most = std::max(most, figure());
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    work();
    done = true;
    watch.join();
    return most - before;
}

} // namespace Bench
