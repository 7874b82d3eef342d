#include "host/webchannelserver.h"

#include <QFile>
#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebChannelAbstractTransport>
#include <QWebSocket>

//! Registers the resources, which a linker would drop from a static library. Must be outside of any
//! namespace.
static void initializePageResource()
{
    Q_INIT_RESOURCE(webchannel);
}

namespace NelvoDevkit {

namespace {

//! \brief Sends the channel's messages over a WebSocket, which it owns.
class SocketTransport final : public QWebChannelAbstractTransport
{
public:
    SocketTransport(QWebSocket* socket, QWebChannel& channel)
        : QWebChannelAbstractTransport(&channel), m_socket(socket)
    {
        socket->setParent(this);
        connect(socket, &QWebSocket::textMessageReceived, this, &SocketTransport::receive);
        connect(socket, &QWebSocket::disconnected, &channel, [this, &channel] {
            channel.disconnectFrom(this);
            deleteLater();
        });
        channel.connectTo(this);
    }

    void sendMessage(const QJsonObject& message) override
    {
        m_socket->sendTextMessage(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
    }

private:
    void receive(const QString& text)
    {
        const QJsonDocument message = QJsonDocument::fromJson(text.toUtf8());
        if (message.isObject())
            Q_EMIT messageReceived(message.object(), this);
    }

    QWebSocket* m_socket;
};

QByteArray resource(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no resource %s", qPrintable(name));
    return file.readAll();
}

} // namespace

WebChannelServer::WebChannelServer(QObject* parent)
    : QObject(parent), m_sockets(QStringLiteral("NelvoEditor"), QWebSocketServer::NonSecureMode)
{
    connect(&m_sockets, &QWebSocketServer::newConnection, this, &WebChannelServer::takeConnections);
}

WebChannelServer::~WebChannelServer() = default;

bool WebChannelServer::start(QString* error)
{
    if (!m_sockets.listen(QHostAddress::LocalHost)) {
        *error = m_sockets.errorString();
        return false;
    }
    return servePage(error);
}

QUrl WebChannelServer::pageUrl() const
{
    return m_page.port() == 0 ? QUrl() : QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(m_page.port()));
}

QUrl WebChannelServer::socketUrl() const
{
    return m_sockets.isListening() ? m_sockets.serverUrl() : QUrl();
}

//! The handler runs on other threads, so it owns copies of all its data.
bool WebChannelServer::servePage(QString* error)
{
    initializePageResource();
    QByteArray page = resource(QStringLiteral(":/nelvo-host/webchannel.html"));
    page.replace("{{socket}}", socketUrl().toEncoded());
    HttpReply script{
        200, "text/javascript; charset=utf-8", resource(QStringLiteral(":/qtwebchannel/qwebchannel.js")), {}};
    const auto answer = [page = htmlReply(page), script](const HttpRequest& request) -> Delivery {
        if (request.path() == "/")
            return {page};
        if (request.path() == "/qwebchannel.js")
            return {script};
        return {textReply(404, "There is nothing at " + request.path() + '\n')};
    };
    return m_page.bind(0, error) && m_page.listen(answer, error);
}

void WebChannelServer::takeConnections()
{
    while (QWebSocket* socket = m_sockets.nextPendingConnection())
        new SocketTransport(socket, m_channel); // the channel owns it until the browser disconnects
}

} // namespace NelvoDevkit
