#pragma once

namespace Soak {

//! Files, sockets and pipes that this process has open; on Windows all of its handles.
int openHandles();
//! The threads of this process.
int threads();

} // namespace Soak
