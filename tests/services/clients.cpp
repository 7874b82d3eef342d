#include "clients.h"

#include "tests/support/files.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QNetworkCookieJar>
#include <QRegularExpression>
#include <QTimer>
#include <QXmlQuery>

bool Answer::isJson() const
{
    return !QJsonDocument::fromJson(body).isNull();
}

Answer Client::post(const QString& url, const QByteArray& body, const QByteArray& contentType)
{
    return send("POST", url, body, contentType);
}

Answer Client::send(const QByteArray& method, const QString& url, const QByteArray& body,
                    const QByteArray& contentType)
{
    return finish(start(method, url, body, contentType));
}

QNetworkReply* Client::start(const QByteArray& method, const QString& url, const QByteArray& body,
                             const QByteArray& contentType)
{
    QNetworkRequest request{QUrl(url)};
    request.setSslConfiguration(m_ssl);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         m_follow ? QNetworkRequest::NoLessSafeRedirectPolicy
                                  : QNetworkRequest::ManualRedirectPolicy);
    if (!contentType.isEmpty())
        request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
    return m_manager.sendCustomRequest(request, method, body);
}

Answer Client::finish(QNetworkReply* reply)
{
    const std::unique_ptr<QNetworkReply> owned(reply);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(Patience, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        loop.exec();
    if (!reply->isFinished())
        qWarning("no end of %s", qPrintable(reply->url().toString()));
    return {reply->error(),
            reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
            reply->readAll(),
            reply->rawHeader("Content-Type"),
            reply->rawHeader("Location"),
            reply->rawHeader("Allow"),
            reply->url()};
}

QByteArray Client::cookie(const QString& url, const QByteArray& name) const
{
    const auto cookies = m_manager.cookieJar()->cookiesForUrl(QUrl(url));
    for (const QNetworkCookie& cookie : cookies) {
        if (cookie.name() == name)
            return cookie.value();
    }
    return {};
}

Answer Client::signIn(const QString& url, const QString& user, const QString& password)
{
    const QByteArray page = get(url + "/login").body;
    return post(url + "/login", formBody(inputValue(page, "lt"), user, password));
}

QString inputValue(const QByteArray& page, const QString& name)
{
    QString text = QString::fromUtf8(page);
    text.remove(QRegularExpression("&[0-9a-zA-Z]+;"));
    QXmlQuery query;
    query.setFocus(text);
    query.setQuery(QString("html/body[@id='cas']/div[@id='container']/div[@id='content']/div[@id='login']"
                           "/form/section[@class='row btn-row']/input[@name='%1']/@value/string()")
                       .arg(name));
    QString value;
    query.evaluateTo(&value);
    return value.trimmed();
}

QByteArray formBody(const QString& ticket, const QString& user, const QString& password)
{
    return "%5FeventId=submit&execution=e1s1&lt=" + QUrl::toPercentEncoding(ticket, {}, "-.") +
           "&productId=86&submit=%25E7%2599%25BB%25E5%25BD%2595&username=" + QUrl::toPercentEncoding(user) +
           "&password=" + TestSupport::md5(password.toUtf8()).toLatin1();
}

RawConnection::RawConnection(const QString& url)
{
    m_socket.connectToHost("127.0.0.1", static_cast<quint16>(QUrl(url).port()));
    m_socket.waitForConnected(Patience);
}

void RawConnection::send(const QByteArray& bytes)
{
    if (!isConnected())
        return;
    m_socket.write(bytes);
    m_socket.waitForBytesWritten(Patience);
}

QByteArray RawConnection::readAnswer()
{
    QByteArray head;
    while (!head.endsWith("\r\n\r\n")) {
        if (m_socket.bytesAvailable() == 0 && !m_socket.waitForReadyRead(Patience))
            return head;
        head += m_socket.read(1);
    }
    const auto length = QRegularExpression("Content-Length: (\\d+)").match(QString::fromLatin1(head));
    const int size = length.captured(1).toInt();
    QByteArray body;
    while (body.size() < size) {
        if (m_socket.bytesAvailable() == 0 && !m_socket.waitForReadyRead(Patience))
            break;
        body += m_socket.read(size - body.size());
    }
    return head + body;
}

QByteArray RawConnection::readToEnd()
{
    while (m_socket.state() == QAbstractSocket::ConnectedState && m_socket.waitForReadyRead(Patience))
        continue;
    return m_socket.readAll();
}
