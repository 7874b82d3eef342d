#include "tests/e2e/wire.h"

#include "services/services.h"
#include "tests/support/systemtexts.h"

#include <QRegularExpression>
#include <QUrl>

namespace E2e {

namespace {

QByteArray transcript(const NelvoDevkit::LoggedRequest& request, const NelvoDevkit::Services& services)
{
    QByteArray text = request.method + ' ' + request.target + '\n';
    for (const NelvoDevkit::HttpHeader& header : request.headers)
        text += header.name + ": " + header.value + '\n';
    text += '\n' + request.body;
    text.replace(QUrl(services.signInUrl()).authority().toLatin1(), "SIGN-IN");
    text.replace(QUrl(services.editorUrl()).authority().toLatin1(), "EDITOR");
    text.replace(QUrl(services.updateUrl()).authority().toLatin1(), "UPDATE");
    text.replace(QUrl(services.packageUrl()).authority().toLatin1(), "PACKAGES");

    QString masked = QString::fromUtf8(text);
    masked.replace(QRegularExpression(QStringLiteral("(JSESSIONID|CASTGC|EDITORSESSION|route)=[^;\n]+")),
                   QStringLiteral("\\1=*"));
    masked.replace(QRegularExpression(QStringLiteral("lt=LT%2D\\d+%2D\\w+%2Dcas01%2Eexample%2Eorg&")),
                   QStringLiteral("lt=TICKET&"));
    return masked.toUtf8();
}

} // namespace

QByteArrayList receivedBy(const NelvoDevkit::Services& services)
{
    QByteArrayList texts;
    const QVector<NelvoDevkit::LoggedRequest> requests = services.log().requests();
    for (const NelvoDevkit::LoggedRequest& request : requests)
        texts.append(transcript(request, services));
    return texts;
}

QByteArray request(const QByteArray& line, const QByteArray& host, const QByteArray& ownHeaders,
                   const QByteArray& body)
{
    return line + "\nHost: " + host +
           "\nUser-Agent: VarloSoft User Agent v1.0\n"
           "Accept: */*\n"
           "Cache-control: no-cache\n"
           "Pragma: no-cache\n"
           "Accept-Encoding: deflate\n" +
           ownHeaders +
           "Connection: Keep-Alive\n"
           "Accept-Language: " +
           TestSupport::acceptLanguage() + "\n\n" + body;
}

} // namespace E2e
