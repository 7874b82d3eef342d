#pragma once

#include <services/services.h>

#include <mutex>

namespace NelvoDevkit {

//! \brief The requests that came in, in the order in which they were read. Any thread.
class RequestLog
{
public:
    void append(const LoggedRequest& request);
    QVector<LoggedRequest> requests() const;
    void clear();

private:
    mutable std::mutex m_mutex;
    QVector<LoggedRequest> m_requests;
};

} // namespace NelvoDevkit
