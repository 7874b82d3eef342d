#pragma once

#include "services/httplistener.h"

#include <QUrl>
#include <QWebChannel>
#include <QWebSocketServer>

namespace NelvoDevkit {

//! \brief A web channel for a browser on this machine, and a page that shows its objects.
//!
//! The channel's objects are sent over WebSockets on a loopback port. The page is served on another port; it
//! loads Qt's own qwebchannel.js, connects, and lists the objects that are registered at that moment. GUI
//! thread only.
class WebChannelServer : public QObject
{
    Q_OBJECT

public:
    explicit WebChannelServer(QObject* parent = nullptr);
    //! Ends all connections.
    ~WebChannelServer() override;

    //! Starts to listen, on ports that the system chooses. On failure returns false and sets `error`, which
    //! must not be null, to the reason.
    bool start(QString* error);

    //! Never null. Objects can be registered before and after start.
    QWebChannel* channel() { return &m_channel; }
    //! The address of the page, which includes that of the channel. Empty before start.
    QUrl pageUrl() const;
    QUrl socketUrl() const;

private:
    bool servePage(QString* error);
    void takeConnections();

    QWebChannel m_channel;
    QWebSocketServer m_sockets;
    HttpListener m_page;
};

} // namespace NelvoDevkit
