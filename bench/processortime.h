#pragma once

namespace Bench {

//! Seconds that the processors have worked for this process so far, on all of its threads. Time that the
//! process waits, or that others take, does not count.
double processorSeconds();
//! The same of the calling thread alone.
double threadSeconds();

} // namespace Bench
