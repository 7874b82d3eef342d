#include "updater/unzippackage.h"

#include "updater/bzip2entry.h"
#include "updater/updatehelper.h"

#include <quazip/quazip.h>
#include <quazip/quazipfile.h>
#include <quazip/quazipfileinfo.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <memory>

namespace {

//! The content of the current entry.
QByteArray contentOf(QuaZip& zip)
{
    constexpr quint16 Bzip2 = 12;
    QuaZipFileInfo64 info;
    const bool isBzip2 = zip.getCurrentFileInfo(&info) && info.method == Bzip2;
    const std::unique_ptr<QIODevice> entry = isBzip2 ? bzip2Entry(zip) : std::make_unique<QuaZipFile>(&zip);
    return entry->open(QIODevice::ReadOnly) ? entry->readAll() : QByteArray();
}

//! \brief Reads entries of a package by their names, as the library decodes them by default.
//!
//! One that is made for each entry, by package and name, would read the package's directory up to that entry
//! every time. This reads it once.
class EntryReader final
{
public:
    explicit EntryReader(const QString& zipFile) : m_zip(zipFile)
    {
        if (!m_zip.open(QuaZip::mdUnzip))
            return;
        const QStringList names = m_zip.getFileNameList();
        QSet<QString> known;
        known.reserve(names.size());
        for (const QString& name : names) {
            if (known.contains(name))
                m_ambiguous.insert(name);
            known.insert(name);
        }
    }

    //! Empty if there is no entry of that name.
    QByteArray read(const QString& name)
    {
        if (m_ambiguous.contains(name)) {
            // The library's table of names leads to the last of them, and it is the first that counts.
            QuaZip zip(m_zip.getZipName());
            return zip.open(QuaZip::mdUnzip) && zip.setCurrentFile(name) ? contentOf(zip) : QByteArray();
        }
        return m_zip.setCurrentFile(name) ? contentOf(m_zip) : QByteArray();
    }

private:
    QuaZip m_zip;
    QSet<QString> m_ambiguous;
};

bool writeEntry(const QString& target, const QByteArray& data)
{
    const QDir dir = QFileInfo(target).dir();
    if (!dir.exists())
        dir.mkpath(QStringLiteral("."));
    QFile file(target);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.flush();
}

//! Whether the file is an archive's end and nothing else, which the library doesn't open.
bool isEmptyPackage(const QString& zipFile)
{
    constexpr int EndSize = 22;
    constexpr int CommentLengthSize = 2;
    QFile file(zipFile);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray end = file.read(EndSize);
    const QByteArray noEntries = QByteArray("PK\x05\x06").leftJustified(EndSize - CommentLengthSize, '\0');
    return end.size() == EndSize && end.startsWith(noEntries);
}

bool unpackEntries(QuaZip& zip, const QString& destDir)
{
    // The library would tell of a damaged first entry.
    if (zip.getEntriesCount() == 0)
        return true;
    EntryReader reader(zip.getZipName());
    for (bool more = zip.goToFirstFile(); more; more = zip.goToNextFile()) {
        const QString name = zip.getCurrentFileName();
        if (name.endsWith(QLatin1Char('/')))
            continue;
        if (!writeEntry(destDir + QLatin1Char('/') + name, reader.read(name)))
            return false;
    }
    // Only this tells the end of the entries from a failure on the way there.
    return zip.getZipError() == 0;
}

} // namespace

bool unzipPackage(const QString& zipFile, const QString& destDir)
{
    QDir dir(destDir);
    if (dir.exists())
        dir.removeRecursively();
    dir.mkpath(QStringLiteral("."));

    QuaZip zip(zipFile);
    zip.setFileNameCodec("gb2312");
    if (zip.open(QuaZip::mdUnzip) ? unpackEntries(zip, destDir) : isEmptyPackage(zipFile))
        return true;
    removePath(destDir);
    return false;
}
