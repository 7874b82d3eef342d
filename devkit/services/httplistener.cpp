#include "services/httplistener.h"

#include "services/connection.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl.hpp>

#include <QDebug>

#include <list>
#include <mutex>
#include <thread>

namespace asio = boost::asio;
using boost::asio::ip::tcp;
using boost::system::error_code;

namespace NelvoDevkit {

namespace {

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
    RequestHandler handler;
    quint16 port = 0;

    std::mutex stateMutex; // guards the members up to the thread
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

//! Accepts connections until a task of the context closes the acceptor.
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

bool HttpListener::listen(const RequestHandler& handler, QString* error)
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
    // A bound port that nobody listens on refuses connections, and no other program can use it.
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
