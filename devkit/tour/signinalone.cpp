#include "tour/signinalone.h"

#include "tour/loginform.h"
#include "tour/uidriver.h"

#include <QCoreApplication>

#include <cstdlib>

namespace NelvoDevkit {

void signInAlone(const QString& account)
{
    const int colon = account.indexOf(QLatin1Char(':'));
    const UiDriver ui({});
    try {
        ui.require(colon > 0, QStringLiteral("the account is USER:PASSWORD"));
        signInByForm(ui, account.left(colon), account.mid(colon + 1));
        ui.awaitItem(QStringLiteral("enterprise"));
        report(QString::fromLatin1(SignedInLine));
    } catch (const Missed& missed) {
        report(QStringLiteral("MISSED: sign-in: ") + missed.what());
        QCoreApplication::exit(EXIT_FAILURE);
    }
}

} // namespace NelvoDevkit
