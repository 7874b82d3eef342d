#pragma once

#include <memory>

namespace NelvoDevkit {

//! \brief The request to end that a terminal or another program sends to this one.
//!
//! On POSIX systems it is SIGINT or SIGTERM. On Windows it is Ctrl+C or Ctrl+Break, the end of the console's
//! window or that of the user's session; the process may then take the few seconds that the system grants.
//! One at a time.
class EndRequest
{
public:
    //! From here on a request doesn't end the process by itself.
    EndRequest();
    ~EndRequest();
    EndRequest(const EndRequest&) = delete;
    EndRequest& operator=(const EndRequest&) = delete;

    //! Blocks until there is a request, which may have come before.
    void wait();

private:
    struct Private;

    std::unique_ptr<Private> d;
};

} // namespace NelvoDevkit
