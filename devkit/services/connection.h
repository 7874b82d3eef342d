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
//! The thread reads and writes by asynchronous operations of a context of its own and waits for each:
//! that way another thread can end any of them, on every operating system.
class Connection
{
public:
    //! Speaks HTTPS with a context for TLS, HTTP if it is null. Both arguments must outlive the connection.
    Connection(const RequestHandler& handler, boost::asio::ssl::context* tls);

    //! The socket to accept into, before start.
    boost::asio::ip::tcp::socket& socket() { return m_socket; }

    void start();
    //! Ends the connection from any thread. What the handler still comes up with is dropped.
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
    //! Sends what the stream gives, `limit` bytes at most, until its end or the connection's. Returns how
    //! many bytes that were, or -1 if the connection is of no more use.
    qint64 stream(BodyStream& body, qint64 limit);
    void waitFor(std::chrono::milliseconds time);
    //! Answers a client that sent something else than HTTP; one that merely went away needs no answer.
    void complainAbout(const boost::system::error_code& error);

    boost::system::error_code handshake();
    boost::system::error_code write(const QByteArray& data);
    boost::system::error_code write(const boost::asio::const_buffer& buffer);
    //! Starts an operation on whichever stream the connection has, and waits for its end.
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
