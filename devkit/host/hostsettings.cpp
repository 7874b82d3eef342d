#include "host/hostsettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSslConfiguration>

namespace NelvoDevkit {

namespace {

const QLatin1String CaCertificateKey("caCertificate");

std::optional<QJsonObject> readObject(const QString& name, QString* error)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return std::nullopt;
    }
    QJsonParseError parseError{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        *error = QStringLiteral("%1 at offset %2").arg(parseError.errorString()).arg(parseError.offset);
        return std::nullopt;
    }
    if (!document.isObject()) {
        *error = QStringLiteral("not a JSON object");
        return std::nullopt;
    }
    return document.object();
}

std::optional<QList<QSslCertificate>> readCertificates(const QString& name, QString* error)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read %1: %2").arg(name, file.errorString());
        return std::nullopt;
    }
    const QList<QSslCertificate> certificates = QSslCertificate::fromDevice(&file, QSsl::Pem);
    if (certificates.isEmpty()) {
        *error = QStringLiteral("no PEM certificate in %1").arg(name);
        return std::nullopt;
    }
    return certificates;
}

} // namespace

std::optional<HostSettings> HostSettings::load(const QString& file, QString* error)
{
    const std::optional<QJsonObject> object = readObject(file, error);
    if (!object)
        return std::nullopt;

    HostSettings settings;
    for (auto entry = object->begin(); entry != object->end(); ++entry) {
        if (entry.key() != CaCertificateKey) {
            *error = QStringLiteral("unknown key \"%1\"").arg(entry.key());
            return std::nullopt;
        }
        if (!entry->isString()) {
            *error = QStringLiteral("\"%1\" is not a text").arg(entry.key());
            return std::nullopt;
        }
        const QString certificateFile = QFileInfo(file).dir().filePath(entry->toString());
        const auto certificates = readCertificates(certificateFile, error);
        if (!certificates)
            return std::nullopt;
        settings.caCertificates = *certificates;
    }
    return settings;
}

void HostSettings::apply() const
{
    if (caCertificates.isEmpty())
        return;
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificates(caCertificates);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

} // namespace NelvoDevkit
