#include "services/connection.h"

#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/basic_parser.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/read.hpp>

#include <limits>

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using boost::asio::ip::tcp;
using boost::system::error_code;

namespace NelvoDevkit {

namespace {

constexpr std::uint32_t HeaderLimit = 64 * 1024;
constexpr qint64 Endless = std::numeric_limits<qint64>::max();

QByteArray bytes(beast::string_view text)
{
    return {text.data(), static_cast<int>(text.size())};
}

//! Whether the connection may be kept after that reply. Not after a redirect: on a kept connection Qt 5.15
//! often sends the redirected request twice.
bool mayBeKeptAfter(const HttpReply& reply)
{
    return reply.status != 302;
}

//! \brief Reads a request and stores all headers in their order and spelling.
class RequestParser final : public http::basic_parser<true>
{
public:
    RequestParser()
    {
        header_limit(HeaderLimit);
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

} // namespace

Connection::Connection(const RequestHandler& handler, asio::ssl::context* tls) : m_handler(handler)
{
    if (tls != nullptr)
        m_tls.emplace(m_socket, *tls);
}

template <typename Operation>
error_code Connection::transfer(const Operation& operation)
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

void Connection::start()
{
    m_thread = std::thread([this] {
        serve();
        m_ended = true;
    });
}

void Connection::cut()
{
    m_cut = true;
    asio::post(m_context, [this] { end(); });
}

void Connection::serve()
{
    const bool ready = !m_tls || !handshake();
    if (ready)
        serveRequests();
    end();
}

void Connection::serveRequests()
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

//! Qt sends the head and the body of a POST in two segments and waits for the acknowledgement of the first. A
//! system may delay it by 40 ms, which would dominate every measured time, so this requests an immediate one.
//! Sending a reply resets the setting, so each request sets it again.
void Connection::acknowledgeAtOnce()
{
#ifdef TCP_QUICKACK
    error_code ignored;
    m_socket.set_option(asio::detail::socket_option::boolean<IPPROTO_TCP, TCP_QUICKACK>(true), ignored);
#endif
}

bool Connection::deliver(const Delivery& delivery, bool keepAlive)
{
    switch (delivery.manner) {
    case Delivery::Manner::Whole:
        return send(delivery, keepAlive) && keepAlive;
    case Delivery::Manner::Raw:
        stream(*delivery.stream, Endless);
        return false;
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

bool Connection::send(const Delivery& delivery, bool keepAlive)
{
    const HttpReply& reply = delivery.reply;
    if (!delivery.stream)
        return !write(wireHead(reply, reply.body.size(), keepAlive) + wireBody(reply));
    const qint64 size = delivery.stream->announcedSize();
    return !write(wireHead(reply, size, keepAlive)) && stream(*delivery.stream, Endless) == size;
}

void Connection::sendHalf(const Delivery& delivery, bool keepAlive)
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

qint64 Connection::stream(BodyStream& body, qint64 limit)
{
    // Sends small paced pieces at once instead of collecting them.
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

void Connection::waitFor(std::chrono::milliseconds time)
{
    m_timer.expires_after(time);
    m_timer.async_wait([](const error_code& /*error*/) {});
    runUntilDone();
}

void Connection::complainAbout(const error_code& error)
{
    const bool malformed = error.category() == make_error_code(http::error::bad_version).category() &&
                           error != http::error::end_of_stream && error != http::error::partial_message;
    if (malformed) {
        const HttpReply reply =
            textReply(400, "bad request: " + QByteArray::fromStdString(error.message()) + '\n');
        write(wireHead(reply, reply.body.size(), false) + wireBody(reply));
    }
}

error_code Connection::handshake()
{
    error_code result;
    m_tls->async_handshake(asio::ssl::stream_base::server,
                           [&result](const error_code& error) { result = error; });
    runUntilDone();
    return result;
}

error_code Connection::write(const QByteArray& data)
{
    return write(asio::buffer(data.constData(), static_cast<std::size_t>(data.size())));
}

error_code Connection::write(const asio::const_buffer& buffer)
{
    return transfer([&buffer](auto& stream, const auto& done) { asio::async_write(stream, buffer, done); });
}

void Connection::runUntilDone()
{
    m_context.restart();
    m_context.run();
}

void Connection::reset()
{
    error_code ignored;
    m_socket.set_option(asio::socket_base::linger(true, 0), ignored);
    m_socket.close(ignored);
}

void Connection::end()
{
    error_code ignored;
    m_timer.cancel();
    m_socket.shutdown(tcp::socket::shutdown_both, ignored);
    m_socket.close(ignored);
}

} // namespace NelvoDevkit
