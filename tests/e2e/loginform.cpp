#include "tests/e2e/loginform.h"

#include "userinput/userinput.h"

namespace E2e {

void submitForm(QQuickWindow* window, const QString& user, const QString& password, const QString& address)
{
    UserInput::fillField(window, QStringLiteral("userNameBox"), user);
    UserInput::fillField(window, QStringLiteral("passwordField"), password);
    UserInput::fillField(window, QStringLiteral("addressBox"), address);
    UserInput::click(UserInput::findItem(window, QStringLiteral("loginButton")));
}

QString shownError(const QQuickWindow* window)
{
    const QQuickItem* error = UserInput::findItem(window, QStringLiteral("errorItem"));
    return error ? error->property("text").toString() : QString();
}

} // namespace E2e
