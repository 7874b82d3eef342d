#pragma once

#include "services/httpmessage.h"

#include <mutex>

namespace NelvoDevkit {

//! \brief A request and the service that it came in at.
struct LoggedRequest : HttpRequest {
    QByteArray service; //!< "sign-in", "editor", "update" or "package"
};

//! \brief A request and what the service answered.
struct Exchange {
    LoggedRequest request;
    HttpReply reply; //!< without the body where that is made while it goes out, as a package's
};

//! \brief The requests that came in and, if they are to be kept, the answers to them. Any thread.
class RequestLog
{
public:
    void append(const LoggedRequest& request);
    void append(const Exchange& exchange);
    //! In the order in which they were read.
    QVector<LoggedRequest> requests() const;
    //! The same with their answers, in the order in which these were made; none without
    //! ServicesOptions::keepsReplies. What a fault does to the connection doesn't show.
    QVector<Exchange> exchanges() const;
    //! Forgets requests and answers so far.
    void clear();

private:
    mutable std::mutex m_mutex;
    QVector<LoggedRequest> m_requests;
    QVector<Exchange> m_exchanges;
};

} // namespace NelvoDevkit
