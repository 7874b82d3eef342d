#pragma once

#include <services/services.h>

class QJsonDocument;
class QJsonObject;

namespace NelvoDevkit {

using HttpRequest = LoggedRequest;
using HttpReply = CannedReply;

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
