#pragma once

#include <QList>
#include <QSslCertificate>
#include <QString>

#include <optional>

class QTextCodec;

namespace NelvoDevkit {

//! \brief The update service and the product.
struct UpdateSource {
    QString address; //!< scheme and host, without a trailing slash; empty if there is no update service
    QString token;
    QString product;
};

//! \brief The host's settings: a file with a JSON object of strings.
//!
//! - "caCertificate": a PEM file with trusted certificates, in addition to those of the system. A relative
//!   path starts at the folder of the settings file.
//! - "updateAddress", "updateToken" and "updateProduct": the update service, all three or none.
//! - "codec": the name of the text codec that replaces the system's code page, such as "GB18030", the code
//!   page of the production systems. It also applies to file names.
struct HostSettings {
    QList<QSslCertificate> caCertificates;
    UpdateSource updateService;
    //! Not owned; null for the codec of the system.
    QTextCodec* codec = nullptr;

    //! Reads `file`. On failure, such as an unknown key, returns nothing and sets `error` to the reason.
    static std::optional<HostSettings> load(const QString& file, QString* error);

    //! Applies the settings to the process.
    void apply() const;
};

} // namespace NelvoDevkit
