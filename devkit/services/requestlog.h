#pragma once

#include "services/httpmessage.h"

#include <mutex>

namespace NelvoDevkit {

//! \brief A request and the service that received it.
struct LoggedRequest : HttpRequest {
    QByteArray service; //!< "sign-in", "editor", "update" or "package"
};

//! \brief A request and its reply.
struct Exchange {
    LoggedRequest request;
    HttpReply reply; //!< without a body that is created while it is sent, such as a package
};

//! \brief The received requests and, if requested, the replies. Any thread.
class RequestLog
{
public:
    void append(const LoggedRequest& request);
    void append(const Exchange& exchange);
    //! In the order in which they were read.
    QVector<LoggedRequest> requests() const;
    //! The same with their replies, in the order of the replies; empty without ServicesOptions::keepsReplies.
    //! Does not show what a fault does to the connection.
    QVector<Exchange> exchanges() const;
    //! Removes all requests and replies so far.
    void clear();

private:
    mutable std::mutex m_mutex;
    QVector<LoggedRequest> m_requests;
    QVector<Exchange> m_exchanges;
};

} // namespace NelvoDevkit
