#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>

namespace TestSupport {

// Texts that differ from one system to the next.

//! The value of Accept-Language that Qt's network makes of the system's language.
QByteArray acceptLanguage();

//! Why the file can't be opened, in the system's words; one that can be opened ends the test.
QString openError(const QString& path, QIODevice::OpenMode mode = QIODevice::ReadOnly);

//! What a program printed, with line feeds alone as its line ends.
QByteArray withPlainLineEnds(QByteArray output);

} // namespace TestSupport
