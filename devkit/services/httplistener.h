#pragma once

#include "services/certificate.h"
#include "services/delivery.h"

#include <memory>

namespace NelvoDevkit {

//! \brief One loopback port with HTTP/1.1 or HTTPS; each connection has its own thread.
//!
//! Every operation may be called on any thread. bind, listen and join must not run at the same time.
class HttpListener
{
public:
    //! Uses HTTPS with a certificate, HTTP without one.
    explicit HttpListener(const std::optional<Certificate>& certificate = std::nullopt);
    ~HttpListener();
    Q_DISABLE_COPY(HttpListener)

    //! Binds the port on 127.0.0.1, 0 for a port that the system chooses, but does not listen yet. On failure
    //! returns false and sets `error`, which must not be null, to the reason; listen does the same.
    bool bind(quint16 port, QString* error);
    bool listen(const RequestHandler& handler, QString* error);
    //! The bound port, 0 before bind.
    quint16 port() const;

    //! Ends all connections; the port refuses new ones until resume().
    void refuse();
    void resume();

    //! Stops listening and ends all connections. Does not wait for running handlers; their replies are not
    //! sent.
    void close();
    //! After close: waits for all threads, including running handlers.
    void join();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace NelvoDevkit
