#include "services/httpmessage.h"

#include <boost/beast/http/status.hpp>

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>
#include <ostream> // status.hpp needs it and does not include it

namespace http = boost::beast::http;

namespace NelvoDevkit {

namespace {

bool hasBody(int status)
{
    return status != 204 && status != 304;
}

QByteArray statusLine(int status)
{
    const auto reason = http::obsolete_reason(http::int_to_status(static_cast<unsigned>(status)));
    return "HTTP/1.1 " + QByteArray::number(status) + ' ' +
           QByteArray(reason.data(), static_cast<int>(reason.size())) + "\r\n";
}

QByteArray httpDate()
{
    return QLocale::c()
        .toString(QDateTime::currentDateTimeUtc(), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"))
        .toLatin1();
}

QByteArray line(const QByteArray& name, const QByteArray& value)
{
    return name + ": " + value + "\r\n";
}

} // namespace

QByteArray HttpRequest::path() const
{
    return target.mid(0, target.indexOf('?'));
}

QByteArray HttpRequest::header(const QByteArray& name) const
{
    const auto found = std::find_if(headers.begin(), headers.end(), [&name](const HttpHeader& header) {
        return header.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers.end() ? QByteArray() : found->value;
}

QByteArray cookie(const HttpRequest& request, const QByteArray& name)
{
    const QList<QByteArray> pairs = request.header("Cookie").split(';');
    for (const QByteArray& pair : pairs) {
        const int equals = pair.indexOf('=');
        if (equals >= 0 && pair.left(equals).trimmed() == name)
            return pair.mid(equals + 1).trimmed();
    }
    return {};
}

HttpReply textReply(int status, const QByteArray& text)
{
    return {status, "text/plain; charset=utf-8", text, {}};
}

HttpReply htmlReply(const QByteArray& page)
{
    return {200, "text/html;charset=UTF-8", page, {}};
}

HttpReply jsonReply(const QJsonDocument& document)
{
    return {200, "application/json;charset=UTF-8", document.toJson(QJsonDocument::Compact), {}};
}

HttpReply jsonReply(const QJsonObject& object)
{
    return jsonReply(QJsonDocument(object));
}

HttpReply redirectReply(const QByteArray& location)
{
    HttpReply reply = textReply(302, "See " + location + '\n');
    reply.headers.append({"Location", location});
    return reply;
}

void setCookie(HttpReply& reply, const QByteArray& cookie)
{
    reply.headers.append({"Set-Cookie", cookie});
}

QByteArray wireHead(const HttpReply& reply, qint64 bodySize, bool keepAlive)
{
    QByteArray head = statusLine(reply.status) + line("Server", "nelvo-services") + line("Date", httpDate());
    for (const auto& header : reply.headers)
        head += line(header.name, header.value);
    if (hasBody(reply.status)) {
        head +=
            line("Content-Type", reply.contentType) + line("Content-Length", QByteArray::number(bodySize));
    }
    if (!keepAlive)
        head += line("Connection", "close");
    return head + "\r\n";
}

QByteArray wireBody(const HttpReply& reply)
{
    return hasBody(reply.status) ? reply.body : QByteArray();
}

} // namespace NelvoDevkit
