#include "host/loginform.h"

#include "host/visitor.h"

#include <QQuickItem>

namespace NelvoDevkit {

void signInByForm(const Visitor& visitor, const QString& user, const QString& password)
{
    const auto hasClosed = [] { return !visibleItem(QStringLiteral("contentLoader")); };
    const auto isAsking = [] { return visibleItem(QStringLiteral("companyRow")) != nullptr; };

    visitor.fill(QStringLiteral("userNameBox"), "outText", user);
    visitor.fill(QStringLiteral("passwordField"), "text", password);
    visitor.click(QStringLiteral("loginButton"));
    visitor.await([&] { return hasClosed() || isAsking(); }, QStringLiteral("a sign-in"));
    if (isAsking()) {
        visitor.click(QStringLiteral("companyRow"));
        visitor.click(QStringLiteral("confirmButton"));
    }
    visitor.await(hasClosed, QStringLiteral("the login window closed"));
}

} // namespace NelvoDevkit
