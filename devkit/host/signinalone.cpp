#include "host/signinalone.h"

#include "host/loginform.h"
#include "host/visitor.h"

#include <QCoreApplication>

#include <cstdlib>
#include <iostream>

namespace NelvoDevkit {

void signInAlone(const QString& account)
{
    const int colon = account.indexOf(QLatin1Char(':'));
    const Visitor visitor({});
    try {
        visitor.require(colon > 0, QStringLiteral("--sign-in takes USER:PASSWORD"));
        signInByForm(visitor, account.left(colon), account.mid(colon + 1));
        visitor.awaitItem(QStringLiteral("enterprise"));
        std::cout << SignedInLine << std::endl;
    } catch (const Missed& missed) {
        std::cerr << "NelvoEditor: sign-in: " << missed.what().toStdString() << std::endl;
        QCoreApplication::exit(EXIT_FAILURE);
    }
}

} // namespace NelvoDevkit
