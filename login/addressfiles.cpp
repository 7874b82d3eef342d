#include "login/addressfiles.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace NelvoPlugin {

namespace {

bool readJsonFile(const QString& path, QJsonObject& result)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "open file " << path << "failed:" << file.errorString();
        return false;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isNull()) {
        qWarning().noquote() << "parse json failed:" << error.errorString();
        return false;
    }
    result = document.object();
    return true;
}

} // namespace

QString readDefaultServer()
{
    QJsonObject addresses;
    readJsonFile(QCoreApplication::applicationDirPath() + QStringLiteral("/defaultServerAddress.json"),
                 addresses);
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
