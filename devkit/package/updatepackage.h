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
    QString name; //!< path in the package, with forward slashes; that of a directory ends with one
    QByteArray content;
};

//! \brief How the names of a package are encoded.
enum class NameEncoding {
    //! As production packages are. A system whose code page does not hold GB2312 unpacks other names than
    //! ASCII to empty
    //! files.
    Gb2312,
    //! Marked as UTF-8 in the archive. Every system reads these.
    Utf8
};

//! \brief What a release says about its package.
struct PackageSummary {
    QString md5; //!< in lower-case hexadecimal digits
    qint64 size = 0;
    int entries = 0;
    QStringList namesBeyondAscii; //!< in the package's order
};

//! Packs the entries in their order, several of one name too, into a zip archive whose names are GB2312
//! text. The same entries give the same bytes, whenever and wherever they are packed. On failure returns
//! nothing and says why in `error`, which must not be null; so does packDirectory.
std::optional<QByteArray> packEntries(const QVector<PackageEntry>& entries, QString* error);

//! Packs what is below the directory, with hidden files and empty directories, into the file `target`,
//! which must lie outside of it and appears whole or not at all. Links to directories are left out.
std::optional<PackageSummary> packDirectory(const QString& directory, const QString& target, QString* error,
                                            NameEncoding names = NameEncoding::Gb2312);

//! MD5 of what the device has left to read, in lower-case hexadecimal digits; empty if reading fails.
QString md5Of(QIODevice& device);

} // namespace NelvoDevkit
