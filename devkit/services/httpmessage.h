#pragma once

#include <QByteArray>
#include <QVector>

class QJsonDocument;
class QJsonObject;

namespace NelvoDevkit {

struct HttpHeader {
    QByteArray name; //!< in a request: in the received spelling
    QByteArray value;
};

//! \brief A received request.
struct HttpRequest {
    QByteArray method;
    QByteArray target;           //!< path and query, not decoded
    QVector<HttpHeader> headers; //!< in the received order
    QByteArray body;

    //! Path of the target, without query.
    QByteArray path() const;
    //! Value of the first header with that name (any case), or a null array.
    QByteArray header(const QByteArray& name) const;
};

//! \brief A reply to a request.
struct HttpReply {
    int status = 200;
    QByteArray contentType = "text/plain; charset=utf-8";
    QByteArray body;
    QVector<HttpHeader> headers; //!< further headers, such as Set-Cookie
};

//! Value of the request's cookie with that name, or a null array.
QByteArray cookie(const HttpRequest& request, const QByteArray& name);

HttpReply textReply(int status, const QByteArray& text);
HttpReply htmlReply(const QByteArray& page);
HttpReply jsonReply(const QJsonDocument& document);
HttpReply jsonReply(const QJsonObject& object);
//! Redirects the client to `location`, with 302.
HttpReply redirectReply(const QByteArray& location);

//! Adds a cookie to the reply; `cookie` is the header's value, such as "a=b; Path=/".
void setCookie(HttpReply& reply, const QByteArray& cookie);

//! Status line and headers in the form in which they are sent, with that size of the body.
QByteArray wireHead(const HttpReply& reply, qint64 bodySize, bool keepAlive);
//! The body in the form in which it is sent: empty if the status forbids a body.
QByteArray wireBody(const HttpReply& reply);

} // namespace NelvoDevkit
