#include "services/httplistener.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/basic_parser.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/read.hpp>

#include <QDebug>

#include <atomic>
#include <limits>
#include <list>
#include <mutex>
#include <thread>

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using boost::asio::ip::tcp;
using boost::system::error_code;

namespace NelvoDevkit {

namespace {

constexpr std::uint32_t headerLimit = 64 * 1024;
constexpr qint64 endless = std::numeric_limits<qint64>::max();

QByteArray bytes(beast::string_view text)
{
    return {text.data(), static_cast<int>(text.size())};
}

//! Whether the connection may be kept after that reply. After a redirect it is not: over a kept connection
//! Qt 5.15 is apt to send the redirected request a second time.
bool mayBeKeptAfter(const HttpReply& reply)
{
    return reply.status != 302;
}

//! \brief Reads a request and keeps its headers as they came: every one, in order and spelling.
class RequestParser final : public http::basic_parser<true>
{
public:
    RequestParser()
    {
        header_limit(headerLimit);
        body_limit(std::numeric_limits<std::uint64_t>::max());
    }

    const HttpRequest& request() const { return m_request; }

private:
    void on_request_impl(http::verb /*method*/, beast::string_view method, beast::string_view target,
                         int /*version*/, error_code& /*error*/) override
    {
        m_request.method = bytes(method);
        m_request.target = bytes(target);
    }

    void on_response_impl(int /*status*/, beast::string_view /*reason*/, int /*version*/,
                          error_code& /*error*/) override
    {}

    void on_field_impl(http::field /*field*/, beast::string_view name, beast::string_view value,
                       error_code& /*error*/) override
    {
        m_request.headers.append({bytes(name), bytes(value)});
    }

    void on_header_impl(error_code& /*error*/) override {}

    void on_body_init_impl(const boost::optional<std::uint64_t>& /*size*/, error_code& /*error*/) override {}

    std::size_t on_body_impl(beast::string_view part, error_code& /*error*/) override { return append(part); }

    void on_chunk_header_impl(std::uint64_t /*size*/, beast::string_view /*extensions*/,
                              error_code& /*error*/) override
    {}

    std::size_t on_chunk_body_impl(std::uint64_t /*remain*/, beast::string_view part,
                                   error_code& /*error*/) override
    {
        return append(part);
    }

    void on_finish_impl(error_code& /*error*/) override {}

    std::size_t append(beast::string_view part)
    {
        m_request.body.append(part.data(), static_cast<int>(part.size()));
        return part.size();
    }

    HttpRequest m_request;
};

//! \brief One connection and its thread.
//!
//! The thread reads and writes by asynchronous operations of a context of its own and waits for each:
//! that way another thread can end any of them, on every operating system.
class Connection
{
public:
    Connection(const HttpListener::Handler& handler, asio::ssl::context* tls) : m_handler(handler)
    {
        if (tls != nullptr)
            m_tls.emplace(m_socket, *tls);
    }

    //! The socket to accept into, before start.
    tcp::socket& socket() { return m_socket; }

    void start()
    {
        m_thread = std::thread([this] {
            serve();
            m_ended = true;
        });
    }

    //! Ends the connection from any thread. What the handler still comes up with is dropped.
    void cut()
    {
        m_cut = true;
        asio::post(m_context, [this] { end(); });
    }

    bool ended() const { return m_ended; }
    void join() { m_thread.join(); }

private:
    void serve()
    {
        const bool ready = !m_tls || !handshake();
        if (ready)
            serveRequests();
        end();
    }

    void serveRequests()
    {
        bool keepAlive = true;
        while (keepAlive) {
            acknowledgeAtOnce();
            RequestParser parser;
            const error_code error = transfer([this, &parser](auto& stream, const auto& done) {
                http::async_read(stream, m_buffer, parser, done);
            });
            if (error) {
                complainAbout(error);
                return;
            }
            const Delivery delivery = m_handler(parser.request());
            keepAlive = !m_cut && deliver(delivery, parser.keep_alive() && mayBeKeptAfter(delivery.reply));
        }
    }

    //! Qt sends the header and the body of a POST in two segments and holds the second back until the first
    //! is acknowledged. A system that can delay that, by 40 ms, is asked not to: it would be the lion's share
    //! of every figure. Sending an answer ends this, so each request asks anew.
    void acknowledgeAtOnce()
    {
#ifdef TCP_QUICKACK
        error_code ignored;
        m_socket.set_option(asio::detail::socket_option::boolean<IPPROTO_TCP, TCP_QUICKACK>(true), ignored);
#endif
    }

    //! Returns whether the connection may serve another request.
    bool deliver(const Delivery& delivery, bool keepAlive)
    {
        switch (delivery.manner) {
        case Delivery::Manner::Whole:
            return send(delivery, keepAlive) && keepAlive;
        case Delivery::Manner::HalfBody:
            sendHalf(delivery, keepAlive);
            return false;
        case Delivery::Manner::Reset:
            reset();
            return false;
        case Delivery::Manner::Drop:
            return false;
        }
        return false;
    }

    bool send(const Delivery& delivery, bool keepAlive)
    {
        const HttpReply& reply = delivery.reply;
        if (!delivery.stream)
            return !write(wireHead(reply, reply.body.size(), keepAlive) + wireBody(reply));
        const qint64 size = delivery.stream->announcedSize();
        return !write(wireHead(reply, size, keepAlive)) && stream(*delivery.stream, endless) == size;
    }

    void sendHalf(const Delivery& delivery, bool keepAlive)
    {
        const HttpReply& reply = delivery.reply;
        if (!delivery.stream) {
            const QByteArray body = wireBody(reply);
            write(wireHead(reply, reply.body.size(), keepAlive) + body.left(body.size() / 2));
            return;
        }
        const qint64 size = delivery.stream->announcedSize();
        if (!write(wireHead(reply, size, keepAlive)))
            stream(*delivery.stream, size / 2);
    }

    //! Sends what the stream gives, `limit` bytes at most, until its end or the connection's. Returns how
    //! many bytes that were, or -1 if the connection is of no more use.
    qint64 stream(BodyStream& body, qint64 limit)
    {
        // Small pieces that are paced don't wait for one another.
        error_code ignored;
        m_socket.set_option(tcp::no_delay(true), ignored);
        qint64 sent = 0;
        while (!m_cut && sent < limit) {
            const BodyStep step = body.next();
            switch (step.kind) {
            case BodyStep::Kind::Write: {
                const auto bytes = step.bytes.substr(0, static_cast<std::size_t>(limit - sent));
                if (write(asio::buffer(bytes.data(), bytes.size())))
                    return -1;
                sent += static_cast<qint64>(bytes.size());
                break;
            }
            case BodyStep::Kind::Wait:
                waitFor(step.time);
                break;
            case BodyStep::Kind::End:
                return sent;
            case BodyStep::Kind::Reset:
                reset();
                return -1;
            }
        }
        return sent;
    }

    void waitFor(std::chrono::milliseconds time)
    {
        m_timer.expires_after(time);
        m_timer.async_wait([](const error_code& /*error*/) {});
        runUntilDone();
    }

    //! Tells a client that sent something else than HTTP; one that merely went away needs no answer.
    void complainAbout(const error_code& error)
    {
        const bool malformed = error.category() == make_error_code(http::error::bad_version).category() &&
                               error != http::error::end_of_stream && error != http::error::partial_message;
        if (malformed) {
            const HttpReply reply =
                textReply(400, "bad request: " + QByteArray::fromStdString(error.message()) + '\n');
            write(wireHead(reply, reply.body.size(), false) + wireBody(reply));
        }
    }

    error_code handshake()
    {
        error_code result;
        m_tls->async_handshake(asio::ssl::stream_base::server,
                               [&result](const error_code& error) { result = error; });
        runUntilDone();
        return result;
    }

    error_code write(const QByteArray& data)
    {
        return write(asio::buffer(data.constData(), static_cast<std::size_t>(data.size())));
    }

    error_code write(const asio::const_buffer& buffer)
    {
        return transfer(
            [&buffer](auto& stream, const auto& done) { asio::async_write(stream, buffer, done); });
    }

    //! Starts an operation on whichever stream the connection has, and waits for its end.
    template <typename Operation>
    error_code transfer(const Operation& operation)
    {
        error_code result;
        const auto done = [&result](const error_code& error, std::size_t /*size*/) { result = error; };
        if (m_tls)
            operation(*m_tls, done);
        else
            operation(m_socket, done);
        runUntilDone();
        return result;
    }

    void runUntilDone()
    {
        m_context.restart();
        m_context.run();
    }

    void reset()
    {
        error_code ignored;
        m_socket.set_option(asio::socket_base::linger(true, 0), ignored);
        m_socket.close(ignored);
    }

    void end()
    {
        error_code ignored;
        m_timer.cancel();
        m_socket.shutdown(tcp::socket::shutdown_both, ignored);
        m_socket.close(ignored);
    }

    const HttpListener::Handler& m_handler;
    asio::io_context m_context;
    tcp::socket m_socket{m_context};
    asio::steady_timer m_timer{m_context};
    std::optional<asio::ssl::stream<tcp::socket&>> m_tls;
    beast::flat_buffer m_buffer;
    std::atomic_bool m_cut = false;
    std::atomic_bool m_ended = false;
    std::thread m_thread;
};

asio::ssl::context tlsContext(const Certificate& certificate)
{
    asio::ssl::context context(asio::ssl::context::tls_server);
    context.use_certificate(asio::buffer(certificate.certificatePem.constData(),
                                         static_cast<std::size_t>(certificate.certificatePem.size())),
                            asio::ssl::context::pem);
    context.use_private_key(
        asio::buffer(certificate.keyPem.constData(), static_cast<std::size_t>(certificate.keyPem.size())),
        asio::ssl::context::pem);
    return context;
}

} // namespace

class HttpListener::Private
{
public:
    error_code bind();
    error_code listen();
    void stopListening();
    void accept();
    void cutConnections();
    void discardEnded();

    enum class State { Closed, Bound, Listening, Refusing };

    std::optional<asio::ssl::context> tls;
    Handler handler;
    quint16 port = 0;

    std::mutex stateMutex; // guards what follows up to the thread
    State state = State::Closed;
    asio::io_context context;
    tcp::acceptor acceptor{context};
    std::thread acceptThread;

    std::mutex connectionsMutex;
    std::list<std::unique_ptr<Connection>> connections;
};

error_code HttpListener::Private::bind()
{
    error_code error;
    const tcp::endpoint endpoint(asio::ip::address_v4::loopback(), port);
    acceptor.open(endpoint.protocol(), error);
    if (!error)
        acceptor.set_option(asio::socket_base::reuse_address(true), error);
    if (!error)
        acceptor.bind(endpoint, error);
    if (!error)
        port = acceptor.local_endpoint(error).port();
    return error;
}

error_code HttpListener::Private::listen()
{
    error_code error;
    acceptor.listen(asio::socket_base::max_listen_connections, error);
    if (!error) {
        state = State::Listening;
        acceptThread = std::thread([this] { accept(); });
    }
    return error;
}

void HttpListener::Private::stopListening()
{
    asio::post(context, [this] {
        error_code ignored;
        acceptor.close(ignored);
    });
    acceptThread.join();
}

//! Takes in connections until the acceptor is closed, which happens inside of run.
void HttpListener::Private::accept()
{
    while (acceptor.is_open()) {
        auto connection = std::make_unique<Connection>(handler, tls ? &*tls : nullptr);
        error_code result;
        acceptor.async_accept(connection->socket(), [&result](const error_code& error) { result = error; });
        context.restart();
        context.run();
        discardEnded();
        if (result || !acceptor.is_open())
            continue;
        const std::lock_guard lock(connectionsMutex);
        connection->start();
        connections.push_back(std::move(connection));
    }
}

void HttpListener::Private::cutConnections()
{
    const std::lock_guard lock(connectionsMutex);
    for (const auto& connection : connections)
        connection->cut();
}

void HttpListener::Private::discardEnded()
{
    const std::lock_guard lock(connectionsMutex);
    connections.remove_if([](const std::unique_ptr<Connection>& connection) {
        const bool ended = connection->ended();
        if (ended)
            connection->join();
        return ended;
    });
}

HttpListener::HttpListener(const std::optional<Certificate>& certificate) : d(std::make_unique<Private>())
{
    if (certificate)
        d->tls.emplace(tlsContext(*certificate));
}

HttpListener::~HttpListener()
{
    close();
    join();
}

bool HttpListener::bind(quint16 port, QString* error)
{
    const std::lock_guard lock(d->stateMutex);
    d->port = port;
    const error_code failure = d->bind();
    if (failure) {
        *error = QStringLiteral("can't take port %1: %2")
                     .arg(port)
                     .arg(QString::fromLocal8Bit(failure.message().c_str()));
        return false;
    }
    d->state = Private::State::Bound;
    return true;
}

bool HttpListener::listen(const Handler& handler, QString* error)
{
    const std::lock_guard lock(d->stateMutex);
    d->handler = handler;
    const error_code failure = d->listen();
    if (failure) {
        *error = QStringLiteral("can't listen on port %1: %2")
                     .arg(d->port)
                     .arg(QString::fromLocal8Bit(failure.message().c_str()));
    }
    return !failure;
}

quint16 HttpListener::port() const
{
    const std::lock_guard lock(d->stateMutex);
    return d->port;
}

void HttpListener::refuse()
{
    const std::lock_guard lock(d->stateMutex);
    if (d->state != Private::State::Listening)
        return;
    d->stopListening();
    d->cutConnections();
    d->state = Private::State::Refusing;
    // A port that is bound but not listened to refuses connections, and nobody else can take it.
    if (const error_code failure = d->bind())
        qWarning("port %d is lost: %s", d->port, failure.message().c_str());
}

void HttpListener::resume()
{
    const std::lock_guard lock(d->stateMutex);
    if (d->state != Private::State::Refusing)
        return;
    if (const error_code failure = d->listen())
        qWarning("can't listen on port %d again: %s", d->port, failure.message().c_str());
}

void HttpListener::close()
{
    const std::lock_guard lock(d->stateMutex);
    if (d->state == Private::State::Listening)
        d->stopListening();
    error_code ignored;
    d->acceptor.close(ignored);
    d->state = Private::State::Closed;
    d->cutConnections();
}

void HttpListener::join()
{
    std::list<std::unique_ptr<Connection>> connections;
    {
        const std::lock_guard lock(d->connectionsMutex);
        connections.swap(d->connections);
    }
    for (const auto& connection : connections)
        connection->join();
}

} // namespace NelvoDevkit
