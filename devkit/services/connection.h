#pragma once

#include "services/delivery.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>

#include <atomic>
#include <optional>
#include <thread>

namespace NelvoDevkit {

//! \brief One connection and its thread.
//!
//! The thread starts asynchronous operations in its own context and waits for each, so that another thread
//! can end them on every operating system.
class Connection
{
public:
    //! Uses HTTPS with a TLS context, HTTP without one. Both arguments must outlive the connection.
    Connection(const RequestHandler& handler, boost::asio::ssl::context* tls);

    //! The socket for the accepted connection, before start.
    boost::asio::ip::tcp::socket& socket() { return m_socket; }

    void start();
    //! Ends the connection. Any thread. Drops a reply that the handler creates later.
    void cut();
    bool ended() const { return m_ended; }
    void join() { m_thread.join(); }

private:
    void serve();
    void serveRequests();
    void acknowledgeAtOnce();

    //! Returns whether the connection may serve another request.
    bool deliver(const Delivery& delivery, bool keepAlive);
    bool send(const Delivery& delivery, bool keepAlive);
    void sendHalf(const Delivery& delivery, bool keepAlive);
    //! Sends the content of the stream, at most `limit` bytes, until its end or the end of the connection.
    //! Returns the number of bytes, or -1 if the connection cannot be used any more.
    qint64 stream(BodyStream& body, qint64 limit);
    void waitFor(std::chrono::milliseconds time);
    //! Replies to a client that did not send HTTP. A client that has disconnected gets no reply.
    void complainAbout(const boost::system::error_code& error);

    boost::system::error_code handshake();
    boost::system::error_code write(const QByteArray& data);
    boost::system::error_code write(const boost::asio::const_buffer& buffer);
    //! Starts an operation on the plain or the encrypted stream and waits for its end.
    template <typename Operation>
    boost::system::error_code transfer(const Operation& operation);
    void runUntilDone();
    void reset();
    void end();

    const RequestHandler& m_handler;
    boost::asio::io_context m_context;
    boost::asio::ip::tcp::socket m_socket{m_context};
    boost::asio::steady_timer m_timer{m_context};
    std::optional<boost::asio::ssl::stream<boost::asio::ip::tcp::socket&>> m_tls;
    boost::beast::flat_buffer m_buffer;
    std::atomic_bool m_cut = false;
    std::atomic_bool m_ended = false;
    std::thread m_thread;
};

} // namespace NelvoDevkit
