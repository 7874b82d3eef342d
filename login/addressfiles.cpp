#include "login/addressfiles.h"

#include "web/jsonfile.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace NelvoPlugin {

QString readDefaultServer()
{
    QJsonObject addresses;
    readJsonFile(QCoreApplication::applicationDirPath() + QStringLiteral("/defaultServerAddress.json"),
                 addresses, NELVO_HERE);
    return addresses.value(QStringLiteral("defaultServer")).toString();
}

QString readUrlSuffix()
{
    QFile file(QCoreApplication::applicationDirPath() + QStringLiteral("/ProxyUrlSuffix.json"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("UrlSuffix")).toString();
}

} // namespace NelvoPlugin
