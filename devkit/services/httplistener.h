#pragma once

#include "services/certificate.h"
#include "services/delivery.h"

#include <memory>

namespace NelvoDevkit {

//! \brief One loopback port that speaks HTTP/1.1 or HTTPS, each connection on a thread of its own.
//!
//! Every operation may be called from any thread, but bind, listen and join not while another of these
//! three runs.
class HttpListener
{
public:
    //! With a certificate the port speaks HTTPS, without one HTTP.
    explicit HttpListener(const std::optional<Certificate>& certificate = std::nullopt);
    ~HttpListener();
    Q_DISABLE_COPY(HttpListener)

    //! Takes the port on 127.0.0.1, 0 for one that the system chooses, but does not listen yet. On
    //! failure returns false and tells why in `error`, which must not be null; so does listen.
    bool bind(quint16 port, QString* error);
    bool listen(const RequestHandler& handler, QString* error);
    //! The port taken, 0 before bind.
    quint16 port() const;

    //! Ends every connection; from its return to resume() the port refuses connections.
    void refuse();
    void resume();

    //! Stops listening and ends every connection, for good. A handler that still runs is not waited for,
    //! and its answer doesn't go out.
    void close();
    //! After close: waits for all threads, and so for handlers that still run.
    void join();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace NelvoDevkit
