#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkCookie>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QString>
#include <QTcpSocket>

#include <memory>

//! The maximum wait for an event that must happen, in milliseconds. Long enough for a loaded machine.
constexpr int Patience = 20000;

//! \brief The reply to a request.
struct Answer {
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    int status = 0;
    QByteArray body;
    QByteArray contentType;
    QByteArray location;
    QByteArray allow;
    QUrl url; //!< the address of the last page, after redirects

    bool isJson() const;
};

//! \brief A client with a cookie jar, like the plug-in.
class Client
{
public:
    void setFollowRedirects(bool follow) { m_follow = follow; }
    void setSslConfiguration(const QSslConfiguration& configuration) { m_ssl = configuration; }

    Answer get(const QString& url) { return send("GET", url); }
    Answer post(const QString& url, const QByteArray& body,
                const QByteArray& contentType = "application/x-www-form-urlencoded");
    Answer send(const QByteArray& method, const QString& url, const QByteArray& body = {},
                const QByteArray& contentType = {});
    //! Sends a request and does not wait.
    QNetworkReply* start(const QByteArray& method, const QString& url, const QByteArray& body = {},
                         const QByteArray& contentType = {});
    //! Waits for the end of the request.
    static Answer finish(QNetworkReply* reply);

    //! The value of the cookie with this name that the jar sends to `url`, or a null array.
    QByteArray cookie(const QString& url, const QByteArray& name) const;

    //! Signs in with the form of the service at `url` and returns the reply of the last page.
    Answer signIn(const QString& url, const QString& user, const QString& password);

private:
    QNetworkAccessManager m_manager;
    QSslConfiguration m_ssl = QSslConfiguration::defaultConfiguration();
    bool m_follow = true;
};

//! The value of the form page's hidden input with this name. Searches the page like the plug-in.
QString inputValue(const QByteArray& page, const QString& name);
//! The body of a posted form.
QByteArray formBody(const QString& ticket, const QString& user, const QString& password);

//! \brief A plain TCP connection, for details that an HTTP client hides.
class RawConnection
{
public:
    explicit RawConnection(const QString& url);

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    QAbstractSocket::SocketError error() const { return m_socket.error(); }
    void send(const QByteArray& bytes);
    //! Reads the head and the body of one reply. If the connection ends earlier, returns the bytes before it.
    QByteArray readAnswer();
    //! Waits until the service ends the connection and returns the received bytes.
    QByteArray readToEnd();

private:
    QTcpSocket m_socket;
};
