#pragma once

namespace Bench {

//! Seconds of processor time of this process so far, on all of its threads. Waiting does not count.
double processorSeconds();
//! The same of the calling thread alone.
double threadSeconds();

} // namespace Bench
