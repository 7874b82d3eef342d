#pragma once

#include <QList>
#include <QSslCertificate>
#include <QString>

#include <optional>

class QTextCodec;

namespace NelvoDevkit {

//! \brief Whom to ask for a newer release of which product.
struct UpdateSource {
    QString address; //!< scheme and host, without a trailing slash; empty if there is none to ask
    QString token;
    QString product;
};

//! \brief The host's settings, a JSON object of texts in a file.
//!
//! - "caCertificate": a PEM file with certificates to trust besides those of the system. A relative path
//!   starts at the settings file's folder.
//! - "updateAddress", "updateToken" and "updateProduct": the update service, all three or none.
//! - "codec": the name of the text codec that stands in for the system's code page, such as "GB18030" to
//!   have that of the production systems. File names go through it too.
struct HostSettings {
    QList<QSslCertificate> caCertificates;
    UpdateSource updateService;
    //! Not owned; null for the system's own.
    QTextCodec* codec = nullptr;

    //! Reads `file`. On failure, an unknown key included, returns nothing and tells why in `error`.
    static std::optional<HostSettings> load(const QString& file, QString* error);

    //! Makes the settings those of the process.
    void apply() const;
};

} // namespace NelvoDevkit
