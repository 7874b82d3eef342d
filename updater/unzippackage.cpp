#include "updater/unzippackage.h"

#include "updater/bzip2entry.h"
#include "updater/updatehelper.h"

#include <quazip/quazip.h>
#include <quazip/quazipfile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <memory>
#include <new>
#include <utility>

namespace {

//! The current entry, open; null if it can't be read.
std::unique_ptr<QIODevice> openEntry(QuaZip& zip)
{
    constexpr int bzip2 = 12;
    int method = 0;
    int level = 0;
    auto plain = std::make_unique<QuaZipFile>(&zip);
    if (!plain->open(QIODevice::ReadOnly, &method, &level, false))
        return nullptr;
    if (method != bzip2)
        return plain;
    plain.reset();
    std::unique_ptr<QIODevice> entry = bzip2Entry(zip);
    return entry->open(QIODevice::ReadOnly) ? std::move(entry) : nullptr;
}

//! \brief Reads entries of a package by their names, as the library decodes them by default.
//!
//! One that is made for each entry, by package and name, would read the package's directory up to that entry
//! every time. This reads it twice.
class EntryReader final
{
public:
    explicit EntryReader(const QString& zipFile) : m_zip(zipFile)
    {
        if (!m_zip.open(QuaZip::mdUnzip))
            return;
        QStringList names;
        for (bool more = m_zip.goToFirstFile(); more; more = m_zip.goToNextFile())
            names.append(m_zip.getCurrentFileName());
        // The library's table of names leads to the entry of that name that it was last asked about, and it
        // is the first that counts.
        m_known.reserve(names.size());
        m_zip.goToFirstFile();
        for (const QString& name : names) {
            if (!m_known.contains(name))
                m_zip.getCurrentFileName();
            m_known.insert(name);
            m_zip.goToNextFile();
        }
    }

    //! The entry of that name; null if there is none. It is good until the next one.
    std::unique_ptr<QIODevice> open(const QString& name)
    {
        // A look-up of any other name would lead the table astray.
        return m_known.contains(name) && m_zip.setCurrentFile(name) ? openEntry(m_zip) : nullptr;
    }

private:
    QuaZip m_zip;
    QSet<QString> m_known;
};

//! Copies what can be read of the entry, which may be null. False if the file doesn't take it.
bool writeEntry(const QString& target, QIODevice* entry)
{
    // A piece in which the entry turns out to be damaged is lost, so its size shows in what is installed.
    constexpr int pieceSize = 16 * 1024;
    constexpr int bufferSize = 16 * pieceSize;
    const QDir dir = QFileInfo(target).dir();
    if (!dir.exists())
        dir.mkpath(QStringLiteral("."));
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray buffer(bufferSize, Qt::Uninitialized);
    for (bool more = entry != nullptr; more;) {
        qint64 filled = 0;
        while (more && filled <= bufferSize - pieceSize) {
            const qint64 size = entry->read(buffer.data() + filled, pieceSize);
            more = size > 0;
            if (more)
                filled += size;
        }
        if (file.write(buffer.constData(), filled) != filled)
            return false;
    }
    return file.flush();
}

//! Whether the file is an archive's end and nothing else, which the library doesn't open.
bool isEmptyPackage(const QString& zipFile)
{
    constexpr int endSize = 22;
    constexpr int commentLengthSize = 2;
    QFile file(zipFile);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray end = file.read(endSize);
    const QByteArray noEntries = QByteArray("PK\x05\x06").leftJustified(endSize - commentLengthSize, '\0');
    return end.size() == endSize && end.startsWith(noEntries);
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
        if (!writeEntry(destDir + QLatin1Char('/') + name, reader.open(name).get()))
            return false;
    }
    // Only this tells the end of the entries from a failure on the way there.
    return zip.getZipError() == 0;
}

bool unpack(const QString& zipFile, const QString& destDir)
{
    QDir dir(destDir);
    if (dir.exists())
        dir.removeRecursively();
    dir.mkpath(QStringLiteral("."));

    QuaZip zip(zipFile);
    zip.setFileNameCodec("gb2312");
    return zip.open(QuaZip::mdUnzip) ? unpackEntries(zip, destDir) : isEmptyPackage(zipFile);
}

} // namespace

bool unzipPackage(const QString& zipFile, const QString& destDir)
{
    bool success = false;
    try {
        success = unpack(zipFile, destDir);
    } catch (const std::bad_alloc&) {
        // The table of names may be too large for the memory. Nothing may leave a thread of the pool.
        success = false;
    }
    if (!success)
        removePath(destDir);
    return success;
}
