#pragma once

#include <QByteArrayList>

//! \file
//! \brief Requests as text, so that a test can compare them byte for byte.

namespace NelvoDevkit {
class Services;
} // namespace NelvoDevkit

namespace E2e {

//! The requests that the services received, each with its line, headers and body. Random values (session ids,
//! tickets) and values of the system (ports) are replaced by their names.
QByteArrayList receivedBy(const NelvoDevkit::Services& services);

//! A request in the same form: its line, its service, its headers in addition to those of every request, and
//! its body.
QByteArray request(const QByteArray& line, const QByteArray& host, const QByteArray& ownHeaders,
                   const QByteArray& body = {});

} // namespace E2e
