#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>

namespace TestSupport {

// Texts that depend on the system.

//! The value of Accept-Language that Qt derives from the system's language.
QByteArray acceptLanguage();

//! The system's text for the failure to open the file. If the file can be opened, the test program ends.
QString openError(const QString& path, QIODevice::OpenMode mode = QIODevice::ReadOnly);

//! The output of a program, with line feeds as line ends.
QByteArray withPlainLineEnds(QByteArray output);

} // namespace TestSupport
