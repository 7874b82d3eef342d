#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>
#include <QWebSocket>

class QImage;

namespace NelvoDevkit {

//! \brief A headless Chromium with one page, read through its debugging protocol.
//!
//! With the protocol the tour can wait for the page's content; a dump of the page would be taken too early.
//! Each operation processes events until the browser has replied, for at most half a minute. The destructor
//! ends the browser.
class Chromium
{
public:
    ~Chromium();

    //! Whether the browser is installed on this machine.
    static bool isInstalled();

    //! Opens the page and waits until it can be read. Returns false on failure; error() is the reason.
    bool open(const QUrl& url);
    QString error() const;
    //! The current content of the page; empty if the browser does not reply.
    QString dom();
    //! The current picture of the page; null if the browser does not reply.
    QImage picture();

private:
    bool start(const QUrl& url);
    bool attach(const QUrl& url);
    QUrl pageSocket(const QUrl& url);
    QUrl pageList();
    QJsonObject call(const QString& method, const QJsonObject& parameters);
    bool fail(const QString& reason);

    QTemporaryDir m_profile;
    QProcess m_process;
    QByteArray m_log;
    QWebSocket m_socket;
    QString m_error;
    int m_lastId = 0;
};

} // namespace NelvoDevkit
