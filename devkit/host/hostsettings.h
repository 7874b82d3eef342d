#pragma once

#include <QList>
#include <QSslCertificate>
#include <QString>

#include <optional>

namespace NelvoDevkit {

//! \brief The host's settings, a JSON object in a file.
//!
//! "caCertificate": a PEM file with certificates to trust besides those of the system. A relative path
//! starts at the settings file's folder.
struct HostSettings {
    QList<QSslCertificate> caCertificates;

    //! Reads `file`. On failure, an unknown key included, returns nothing and tells why in `error`.
    static std::optional<HostSettings> load(const QString& file, QString* error);

    //! Makes the settings those of the process.
    void apply() const;
};

} // namespace NelvoDevkit
