#pragma once

#include "services/httplistener.h"

#include <QUrl>
#include <QWebChannel>
#include <QWebSocketServer>

namespace NelvoDevkit {

//! \brief A web channel that a browser on this machine reaches, and a page that shows what is on it.
//!
//! The channel's objects travel over WebSockets on a loopback port. The page is served on another one; it
//! loads Qt's own qwebchannel.js, connects and lists the objects registered at that moment. GUI thread only.
class WebChannelServer : public QObject
{
    Q_OBJECT

public:
    explicit WebChannelServer(QObject* parent = nullptr);
    //! Ends every connection.
    ~WebChannelServer() override;

    //! Begins to listen, on ports that the system chooses. On failure returns false and tells why in
    //! `error`, which must not be null.
    bool start(QString* error);

    //! Never null. It may be filled before and after start.
    QWebChannel* channel() { return &m_channel; }
    //! The page for the browser, and where it finds the channel. Empty before start.
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
