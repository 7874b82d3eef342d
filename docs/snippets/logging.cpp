#include "docs/snippets/logging.h"

#include <QString>
#include <QtGlobal>

namespace Snippets {

//! [log-filter]
namespace {

QtMessageHandler& nextHandler()
{
    static QtMessageHandler handler = nullptr;
    return handler;
}

//! Called on any thread.
void dropSecrets(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const bool hasCookies = text.startsWith(QLatin1String("cookiesList:"));
    const bool hasModelList = text.startsWith(QLatin1String("QJsonObject("));
    if (type != QtDebugMsg || !(hasCookies || hasModelList))
        nextHandler()(type, context, text);
}

} // namespace

//! Call it at the start of main, after the host has installed its own handler.
void keepSecretsOutOfTheLog()
{
    nextHandler() = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(dropSecrets);
}
//! [log-filter]

} // namespace Snippets
