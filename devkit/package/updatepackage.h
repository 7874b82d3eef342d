#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

class QIODevice;

namespace NelvoDevkit {

//! \brief One entry of an update package.
struct PackageEntry {
    QString name; //!< path in the package, with forward slashes; a directory ends with a slash
    QByteArray content;
};

//! \brief The encoding of the names in a package.
enum class NameEncoding {
    //! As in production packages. On a system whose code page cannot read GB2312, names outside ASCII are
    //! unpacked as empty files.
    Gb2312,
    //! Marked as UTF-8 in the archive. Every system reads these names.
    Utf8
};

//! \brief The values of a release that describe its package.
struct PackageSummary {
    QString md5; //!< in lower-case hexadecimal digits
    qint64 size = 0;
    int entries = 0;
    QStringList namesBeyondAscii; //!< in the order of the package
};

//! Packs the entries in their order, including several with the same name, into a zip archive whose names are
//! GB2312 text. The same entries always give the same bytes. On failure returns nothing and sets `error`,
//! which must not be null, to the reason; packDirectory does the same.
std::optional<QByteArray> packEntries(const QVector<PackageEntry>& entries, QString* error);

//! Packs the content of the directory, including hidden files and empty directories, into the file `target`,
//! which must be outside of it. It is written completely or not at all. Skips links to directories.
std::optional<PackageSummary> packDirectory(const QString& directory, const QString& target, QString* error,
                                            NameEncoding names = NameEncoding::Gb2312);

//! MD5 of the unread rest of the device, in lower-case hexadecimal digits; empty if reading fails.
QString md5Of(QIODevice& device);

} // namespace NelvoDevkit
