#pragma once

namespace Bench {

//! The processor time of all threads of this process so far, in seconds. Waiting does not count.
double processorSeconds();
//! The processor time of the calling thread so far, in seconds.
double threadSeconds();

} // namespace Bench
