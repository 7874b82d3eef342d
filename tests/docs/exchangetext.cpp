#include "tests/docs/exchangetext.h"

#include "services/services.h"
#include "tests/docs/foldedjson.h"
#include "tests/support/systemtexts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

namespace Docs {

using NelvoDevkit::Exchange;
using NelvoDevkit::HttpReply;
using NelvoDevkit::LoggedRequest;
using NelvoDevkit::Services;

namespace {

using Header = NelvoDevkit::HttpHeader;

//! True for headers that the page omits: Host, because the request line shows the address, and the headers
//! that the requests have in common. Requests of the self-update have other headers, which the page shows.
bool isEverywhere(const Header& header)
{
    static const QStringList common{
        QStringLiteral("User-Agent: VarloSoft User Agent v1.0"),
        QStringLiteral("Accept: */*"),
        QStringLiteral("Cache-control: no-cache"),
        QStringLiteral("Pragma: no-cache"),
        QStringLiteral("Accept-Encoding: deflate"),
        QStringLiteral("Connection: Keep-Alive"),
        QStringLiteral("Accept-Language: ") + TestSupport::acceptLanguage(),
    };
    return header.name == "Host" || common.contains(QString::fromUtf8(header.name + ": " + header.value));
}

QString text(const QVector<Header>& headers)
{
    QByteArray lines;
    for (const Header& header : headers)
        lines += header.name + ": " + header.value + '\n';
    return QString::fromUtf8(lines);
}

QString urlOf(const QByteArray& service, const Services& services)
{
    if (service == "sign-in")
        return services.signInUrl();
    if (service == "editor")
        return services.editorUrl();
    return service == "update" ? services.updateUrl() : services.packageUrl();
}

//! The body after an empty line, with a line feed at its end. Empty if the body is empty.
QString bodyText(const QString& body)
{
    if (body.isEmpty())
        return {};
    return QLatin1Char('\n') + body + QString(body.endsWith(QLatin1Char('\n')) ? 0 : 1, QLatin1Char('\n'));
}

//! The lines of the form page, or of the page after it, with the elements that the plug-in reads. A line "…"
//! replaces the lines between them.
QString pageExcerpt(const QString& page)
{
    static const QRegularExpression read(QStringLiteral(
        R"re(<html|<body|id="(container|content|login|fm1|msg)"|btn-row|type="hidden"|</html>)re"));
    QStringList lines;
    const QStringList all = page.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : all) {
        if (read.match(line).hasMatch())
            lines.append(line);
        else if (lines.isEmpty() || lines.last() != QStringLiteral("…"))
            lines.append(QStringLiteral("…"));
    }
    return lines.join(QLatin1Char('\n'));
}

QString answerBody(const HttpReply& reply)
{
    if (reply.contentType.startsWith("application/json")) {
        const QJsonDocument document = QJsonDocument::fromJson(reply.body);
        return foldedJson(document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()));
    }
    if (reply.contentType == "application/octet-stream")
        return QStringLiteral("(the bytes of the package)");
    const QString body = QString::fromUtf8(reply.body);
    return reply.contentType.startsWith("text/html") ? pageExcerpt(body) : body;
}

QString requestText(const LoggedRequest& request, const QVector<Header>& headers, const Services& services)
{
    return QStringLiteral("%1 %2%3\n%4%5")
        .arg(QString::fromUtf8(request.method), urlOf(request.service, services),
             QString::fromUtf8(request.target), text(headers), bodyText(QString::fromUtf8(request.body)));
}

QString answerText(const HttpReply& reply)
{
    return QStringLiteral("HTTP/1.1 %1\n%2Content-Type: %3\n%4")
        .arg(QString::number(reply.status), text(reply.headers), QString::fromUtf8(reply.contentType),
             bodyText(answerBody(reply)));
}

QString withoutWhatVaries(QString text, const Services& services)
{
    for (const char* service : {"sign-in", "editor", "update", "package"}) {
        const QString authority = QUrl(urlOf(service, services)).authority();
        const QString name = QLatin1String(service) + QStringLiteral(".example.org");
        text.replace(authority, name);
        text.replace(QString::fromLatin1(QUrl::toPercentEncoding(authority)), name);
    }
    static const QRegularExpression cookie(QStringLiteral("(JSESSIONID|CASTGC|EDITORSESSION|route)=[^;\n]+"));
    static const QRegularExpression ticket(QStringLiteral("LT(-|%2D)(\\d+)(-|%2D)\\w+(-|%2D)cas01"));
    static const QRegularExpression token(QStringLiteral("iot-(\\d+)-\\w+"));
    text.replace(cookie, QStringLiteral("\\1=…"));
    text.replace(ticket, QStringLiteral("LT\\1\\2\\3…\\4cas01"));
    text.replace(token, QStringLiteral("iot-\\1-…"));
    text.replace(QStringLiteral("Accept-Language: ") + TestSupport::acceptLanguage(),
                 QStringLiteral("Accept-Language: en,*"));
    return text;
}

} // namespace

QString requestText(const Exchange& exchange, const Services& services)
{
    return withoutWhatVaries(requestText(exchange.request, exchange.request.headers, services), services);
}

QString exchangeText(const Exchange& exchange, const Services& services)
{
    QVector<Header> own = exchange.request.headers;
    own.erase(std::remove_if(own.begin(), own.end(), isEverywhere), own.end());
    return withoutWhatVaries(requestText(exchange.request, own, services) + QLatin1Char('\n') +
                                 answerText(exchange.reply),
                             services);
}

} // namespace Docs
