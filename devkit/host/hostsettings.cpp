#include "host/hostsettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSslConfiguration>
#include <QTextCodec>

namespace NelvoDevkit {

namespace {

const auto CaCertificateKey = QStringLiteral("caCertificate");
const auto CodecKey = QStringLiteral("codec");

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
    QString certificateFile;
    QString codecName;
    UpdateSource& service = settings.updateService;
    const QHash<QString, QString*> targets = {{CaCertificateKey, &certificateFile},
                                              {CodecKey, &codecName},
                                              {QStringLiteral("updateAddress"), &service.address},
                                              {QStringLiteral("updateToken"), &service.token},
                                              {QStringLiteral("updateProduct"), &service.product}};
    for (auto entry = object->begin(); entry != object->end(); ++entry) {
        QString* const target = targets.value(entry.key());
        if (!target) {
            *error = QStringLiteral("unknown key \"%1\"").arg(entry.key());
            return std::nullopt;
        }
        if (!entry->isString()) {
            *error = QStringLiteral("\"%1\" is not a text").arg(entry.key());
            return std::nullopt;
        }
        *target = entry->toString();
    }

    if (service.address.isEmpty() != service.token.isEmpty() ||
        service.address.isEmpty() != service.product.isEmpty()) {
        *error = QStringLiteral("\"updateAddress\", \"updateToken\" and \"updateProduct\" go together");
        return std::nullopt;
    }
    if (object->contains(CodecKey)) {
        settings.codec = QTextCodec::codecForName(codecName.toLatin1());
        if (!settings.codec) {
            *error = QStringLiteral("there is no codec \"%1\"").arg(codecName);
            return std::nullopt;
        }
    }
    if (object->contains(CaCertificateKey)) {
        const auto certificates = readCertificates(QFileInfo(file).dir().filePath(certificateFile), error);
        if (!certificates)
            return std::nullopt;
        settings.caCertificates = *certificates;
    }
    return settings;
}

void HostSettings::apply() const
{
    if (codec)
        QTextCodec::setCodecForLocale(codec);
    if (caCertificates.isEmpty())
        return;
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificates(caCertificates);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

} // namespace NelvoDevkit
