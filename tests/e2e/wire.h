#pragma once

#include <QByteArrayList>

//! \file
//! \brief Requests as text, so that a test can compare them byte for byte.

namespace NelvoDevkit {
class Services;
} // namespace NelvoDevkit

namespace E2e {

//! The requests that the services received, each as its line, headers and body. What is drawn by lot
//! (session ids, tickets) or given by the system (ports) is replaced by its name.
QByteArrayList receivedBy(const NelvoDevkit::Services& services);

//! A request in the same form: its line, the service it goes to, what it has beyond the headers of every
//! request, and its body.
QByteArray request(const QByteArray& line, const QByteArray& host, const QByteArray& ownHeaders,
                   const QByteArray& body = {});

} // namespace E2e
