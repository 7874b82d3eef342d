#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>
#include <QWebSocket>

class QImage;

namespace NelvoDevkit {

//! \brief A headless Chromium with one page, looked into by its debugging protocol.
//!
//! That way one waits for what the page shows, where a dump of the page comes as early as the browser likes.
//! Each operation spins the event loop until the browser has answered, for half a minute at most. The
//! browser ends with this object.
class Chromium
{
public:
    ~Chromium();

    //! Whether this machine has the browser.
    static bool isInstalled();

    //! Opens the page and returns once it can be looked into, or tells why it can't.
    bool open(const QUrl& url);
    QString error() const;
    //! The page as it stands now; empty if the browser does not tell.
    QString dom();
    //! What the page looks like now; null if the browser does not tell.
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
