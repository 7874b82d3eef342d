#pragma once

#include <services/services.h>

#include <mutex>

namespace NelvoDevkit {

//! \brief The requests that came in, in the order in which they were read, and answers to them if they are
//! to be kept. Any thread.
class RequestLog
{
public:
    void append(const LoggedRequest& request);
    void append(const Exchange& exchange);
    QVector<LoggedRequest> requests() const;
    QVector<Exchange> exchanges() const;
    void clear();

private:
    mutable std::mutex m_mutex;
    QVector<LoggedRequest> m_requests;
    QVector<Exchange> m_exchanges;
};

} // namespace NelvoDevkit
