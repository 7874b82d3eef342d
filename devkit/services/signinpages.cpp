#include "services/signinpages.h"

#include <QFile>

namespace NelvoDevkit {

namespace {

QByteArray page(const QString& name)
{
    QFile file(QStringLiteral(":/nelvo-services/pages/") + name);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

} // namespace

QByteArray formPage(const FormValues& values, const QString& message)
{
    const QString notice = QStringLiteral("<div id=\"msg\" class=\"errors\">%1</div>");
    return page(QStringLiteral("login.html"))
        .replace("{{lt}}", values.ticket)
        .replace("{{execution}}", values.execution)
        .replace("{{message}}", message.isEmpty() ? QByteArray() : notice.arg(message).toUtf8());
}

QByteArray successPage(const QString& user)
{
    return page(QStringLiteral("success.html")).replace("{{user}}", user.toHtmlEscaped().toUtf8());
}

} // namespace NelvoDevkit
