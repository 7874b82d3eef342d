#pragma once

#include <QByteArray>

#include <optional>

namespace NelvoDevkit {

//! \brief A certificate with its private key, both in PEM form.
struct Certificate {
    QByteArray certificatePem;
    QByteArray keyPem;
};

//! Creates a self-signed certificate for 127.0.0.1 and localhost, which is also its own authority. Returns
//! nothing if the cryptographic library fails.
std::optional<Certificate> makeCertificate();

} // namespace NelvoDevkit
