#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkCookie>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QString>
#include <QTcpSocket>

#include <memory>

//! How long a test waits for what is sure to come; a loaded machine may need a while.
constexpr int Patience = 20000;

//! \brief What came back on a request.
struct Answer {
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    int status = 0;
    QByteArray body;
    QByteArray contentType;
    QByteArray location;
    QByteArray allow;
    QUrl url; //!< of the last page, where redirects were followed

    bool isJson() const;
};

//! \brief A client with a cookie jar, as the plug-in is one.
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
    //! Sends and doesn't wait.
    QNetworkReply* start(const QByteArray& method, const QString& url, const QByteArray& body = {},
                         const QByteArray& contentType = {});
    //! Waits for the end of what was started.
    static Answer finish(QNetworkReply* reply);

    //! The jar's cookie of that name for the address, or a null array.
    QByteArray cookie(const QString& url, const QByteArray& name) const;

    //! Signs in with the form of the service at `url` and returns the last page's answer.
    Answer signIn(const QString& url, const QString& user, const QString& password);

private:
    QNetworkAccessManager m_manager;
    QSslConfiguration m_ssl = QSslConfiguration::defaultConfiguration();
    bool m_follow = true;
};

//! The value of the form page's hidden input of that name, found the way in which the plug-in finds it.
QString inputValue(const QByteArray& page, const QString& name);
//! The body of a posted form.
QByteArray formBody(const QString& ticket, const QString& user, const QString& password);

//! \brief A bare connection, for what a well-behaved client hides.
class RawConnection
{
public:
    explicit RawConnection(const QString& url);

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    QAbstractSocket::SocketError error() const { return m_socket.error(); }
    void send(const QByteArray& bytes);
    //! Reads one answer, head and body, or what there is of it until the connection ends.
    QByteArray readAnswer();
    //! Waits until the other side ends the connection, and returns what came before.
    QByteArray readToEnd();

private:
    QTcpSocket m_socket;
};
