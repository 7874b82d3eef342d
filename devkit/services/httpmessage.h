#pragma once

#include <QByteArray>
#include <QVector>

class QJsonDocument;
class QJsonObject;

namespace NelvoDevkit {

struct HttpHeader {
    QByteArray name; //!< of a request: in the spelling received
    QByteArray value;
};

//! \brief A request as it came in.
struct HttpRequest {
    QByteArray method;
    QByteArray target;           //!< path and query, undecoded
    QVector<HttpHeader> headers; //!< in the order received
    QByteArray body;

    //! Path of the target, without query.
    QByteArray path() const;
    //! Value of the first header of that name (any case), or a null array.
    QByteArray header(const QByteArray& name) const;
};

//! \brief An answer to a request.
struct HttpReply {
    int status = 200;
    QByteArray contentType = "text/plain; charset=utf-8";
    QByteArray body;
    QVector<HttpHeader> headers; //!< further headers, such as Set-Cookie
};

//! Value of the request's cookie of that name, or a null array.
QByteArray cookie(const HttpRequest& request, const QByteArray& name);

HttpReply textReply(int status, const QByteArray& text);
HttpReply htmlReply(const QByteArray& page);
HttpReply jsonReply(const QJsonDocument& document);
HttpReply jsonReply(const QJsonObject& object);
//! Sends the client on to `location`, with 302.
HttpReply redirectReply(const QByteArray& location);

//! Adds a cookie to the reply; `cookie` is the header's value, such as "a=b; Path=/".
void setCookie(HttpReply& reply, const QByteArray& cookie);

//! Status line and headers as they go over the wire. They announce a body of that size.
QByteArray wireHead(const HttpReply& reply, qint64 bodySize, bool keepAlive);
//! The body as it goes over the wire: none where the status forbids one.
QByteArray wireBody(const HttpReply& reply);

} // namespace NelvoDevkit
