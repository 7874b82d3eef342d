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

//! Opens the current entry. Returns null if it cannot be read.
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

//! \brief Finds entries of a package by their names, as QuaZip decodes them by default.
//!
//! QuaZip's own search, started anew for each entry, reads the package's directory up to that entry every
//! time. This class reads the directory twice in all.
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
        // For each name, QuaZip's table refers to the entry whose name was read last. The first entry of each
        // name must count, so the name of a later one is not read again.
        m_known.reserve(names.size());
        m_zip.goToFirstFile();
        for (const QString& name : names) {
            if (!m_known.contains(name))
                m_zip.getCurrentFileName();
            m_known.insert(name);
            m_zip.goToNextFile();
        }
    }

    //! Opens the entry with that name; null if there is none. Valid until the next call.
    std::unique_ptr<QIODevice> open(const QString& name)
    {
        // Searching for an unknown name would make QuaZip change its table.
        return m_known.contains(name) && m_zip.setCurrentFile(name) ? openEntry(m_zip) : nullptr;
    }

private:
    QuaZip m_zip;
    QSet<QString> m_known;
};

//! Copies the readable part of the entry, which may be null. Returns false if the file cannot be written.
bool writeEntry(const QString& target, QIODevice* entry)
{
    // If a piece contains damaged data, the whole piece is lost: its size determines what is installed.
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

//! Whether the file is a zip without entries, which QuaZip does not open.
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
    // QuaZip would report a damaged first entry.
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
    // Only this distinguishes the end of the entries from a failure before it.
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
        // The table of names may exceed the memory. No exception may leave a thread of the pool.
        success = false;
    }
    if (!success)
        removePath(destDir);
    return success;
}
