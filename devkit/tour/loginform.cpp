#include "tour/loginform.h"

#include "tour/uidriver.h"
#include "userinput/userinput.h"

#include <QQuickItem>

namespace NelvoDevkit {

void signInByForm(const UiDriver& ui, const QString& user, const QString& password)
{
    const auto hasClosed = [] { return !UserInput::findItem(QStringLiteral("contentLoader")); };
    const auto isAsking = [] { return UserInput::findItem(QStringLiteral("companyRow")) != nullptr; };

    ui.fill(QStringLiteral("userNameBox"), "outText", user);
    ui.fill(QStringLiteral("passwordField"), "text", password);
    ui.click(QStringLiteral("loginButton"));
    ui.await([&] { return hasClosed() || isAsking(); }, QStringLiteral("a sign-in"));
    if (isAsking()) {
        ui.click(QStringLiteral("companyRow"));
        ui.click(QStringLiteral("confirmButton"));
    }
    ui.await(hasClosed, QStringLiteral("the login window closed"));
}

} // namespace NelvoDevkit
