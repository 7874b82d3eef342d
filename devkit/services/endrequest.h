#pragma once

#include <memory>

namespace NelvoDevkit {

//! \brief A request to end, sent by a terminal or another program.
//!
//! On POSIX systems SIGINT or SIGTERM. On Windows Ctrl+C, Ctrl+Break, or the end of the console window or of
//! the user's session; in the last two cases the system grants the process a few seconds. One at a time.
class EndRequest
{
public:
    //! From now on a request does not end the process by itself.
    EndRequest();
    ~EndRequest();
    EndRequest(const EndRequest&) = delete;
    EndRequest& operator=(const EndRequest&) = delete;

    //! Blocks until the first request, also if it was sent before.
    void wait();

private:
    struct Private;

    std::unique_ptr<Private> d;
};

} // namespace NelvoDevkit
