#include "package/updatepackage.h"

#include "package/gb2312.h"

#include <quazip/quazip.h>
#include <quazip/quazipfile.h>
#include <quazip/quazipnewinfo.h>

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <functional>
#include <memory>

namespace NelvoDevkit {

namespace {

constexpr int PieceSize = 1024 * 1024;

//! The reason why a package cannot be created.
struct PackageError {
    QString text;
};

//! An entry whose content is opened when it is packed.
struct Source {
    QString name;
    std::function<std::unique_ptr<QIODevice>()> open;
};

//! The attributes of each entry are the same, except the name: a package does not reveal when and where it
//! was created.
QuaZipNewInfo entryInfo(const QString& name)
{
    QuaZipNewInfo info(name);
    info.dateTime = QDateTime({2000, 1, 1}, {0, 0});
    info.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther |
                        (name.endsWith(QLatin1Char('/')) ? QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther
                                                         : QFile::Permissions()));
    return info;
}

//! Passes the device's content on in pieces. Returns whether all of it was read and accepted.
bool readInPieces(QIODevice& device, const std::function<bool(const QByteArray&)>& take)
{
    QByteArray piece(PieceSize, Qt::Uninitialized);
    for (;;) {
        const qint64 size = device.read(piece.data(), piece.size());
        if (size <= 0)
            return size == 0;
        if (!take(QByteArray::fromRawData(piece.constData(), static_cast<int>(size))))
            return false;
    }
}

void addEntry(QuaZip& zip, const Source& source)
{
    const std::unique_ptr<QIODevice> content = source.open();
    if (!content->isOpen() && !content->open(QIODevice::ReadOnly))
        throw PackageError{QStringLiteral("can't read %1: %2").arg(source.name, content->errorString())};
    QuaZipFile entry(&zip);
    const auto write = [&entry](const QByteArray& piece) { return entry.write(piece) == piece.size(); };
    const bool isWritten =
        entry.open(QIODevice::WriteOnly, entryInfo(source.name)) && readInPieces(*content, write);
    entry.close();
    if (!isWritten || entry.getZipError() != ZIP_OK)
        throw PackageError{QStringLiteral("can't pack %1").arg(source.name)};
}

void writeZip(QIODevice& target, const QVector<Source>& sources, NameEncoding names)
{
    QuaZip zip(&target);
    zip.setFileNameCodec("GB2312");
    zip.setUtf8Enabled(names == NameEncoding::Utf8);
    zip.setAutoClose(false);
    if (!zip.open(QuaZip::mdCreate))
        throw PackageError{QStringLiteral("can't begin the archive")};
    for (const Source& source : sources)
        addEntry(zip, source);
    zip.close();
    if (zip.getZipError() != ZIP_OK)
        throw PackageError{QStringLiteral("can't end the archive")};
}

//! The content of the directory, sorted by name, because file systems list it in any order.
QVector<Source> sourcesIn(const QString& directory)
{
    if (!QFileInfo(directory).isDir())
        throw PackageError{QStringLiteral("there is no directory %1").arg(directory)};
    const QDir root(QFileInfo(directory).absoluteFilePath());
    QVector<Source> sources;
    QDirIterator found(root.path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (found.hasNext()) {
        const QString path = found.next();
        const QString name = root.relativeFilePath(path);
        if (!found.fileInfo().isDir())
            sources.append({name, [path] { return std::make_unique<QFile>(path); }});
        else if (!found.fileInfo().isSymLink())
            sources.append({name + QLatin1Char('/'), [] { return std::make_unique<QBuffer>(); }});
    }
    std::sort(sources.begin(), sources.end(),
              [](const Source& left, const Source& right) { return left.name < right.name; });
    return sources;
}

void checkNames(const QVector<Source>& sources)
{
    for (const Source& source : sources) {
        if (!isGb2312(source.name))
            throw PackageError{QStringLiteral("GB2312 can't hold the name \"%1\"").arg(source.name)};
    }
}

void checkIsOutside(const QString& target, const QString& directory)
{
    const QString parent = QFileInfo(QFileInfo(target).absolutePath()).canonicalFilePath();
    const QString root = QFileInfo(directory).canonicalFilePath();
    if ((parent + QLatin1Char('/')).startsWith(root + QLatin1Char('/')))
        throw PackageError{QStringLiteral("the package can't lie in the directory that it is made from")};
}

PackageError cannotWrite(const QFileDevice& file)
{
    return {QStringLiteral("can't write %1: %2").arg(file.fileName(), file.errorString())};
}

QStringList namesBeyondAscii(const QVector<Source>& sources)
{
    QStringList names;
    for (const Source& source : sources) {
        if (source.name.toUtf8().size() != source.name.size())
            names.append(source.name);
    }
    return names;
}

PackageSummary summaryOf(const QString& fileName, const QVector<Source>& sources)
{
    QFile file(fileName);
    const QString md5 = file.open(QIODevice::ReadOnly) ? md5Of(file) : QString();
    if (md5.isEmpty())
        throw PackageError{QStringLiteral("can't read %1: %2").arg(fileName, file.errorString())};
    return {md5, file.size(), sources.size(), namesBeyondAscii(sources)};
}

} // namespace

std::optional<QByteArray> packEntries(const QVector<PackageEntry>& entries, QString* error)
{
    QVector<Source> sources;
    for (const PackageEntry& entry : entries) {
        sources.append({entry.name, [content = entry.content] {
                            auto buffer = std::make_unique<QBuffer>();
                            buffer->setData(content);
                            return buffer;
                        }});
    }
    try {
        checkNames(sources);
        QBuffer target;
        target.open(QIODevice::WriteOnly);
        writeZip(target, sources, NameEncoding::Gb2312);
        return target.data();
    } catch (const PackageError& failure) {
        *error = failure.text;
        return std::nullopt;
    }
}

std::optional<PackageSummary> packDirectory(const QString& directory, const QString& target, QString* error,
                                            NameEncoding names)
{
    try {
        const QVector<Source> sources = sourcesIn(directory);
        if (names == NameEncoding::Gb2312)
            checkNames(sources);
        checkIsOutside(target, directory);
        QSaveFile file(target);
        if (!file.open(QIODevice::WriteOnly))
            throw cannotWrite(file);
        writeZip(file, sources, names);
        if (!file.commit())
            throw cannotWrite(file);
        return summaryOf(target, sources);
    } catch (const PackageError& failure) {
        *error = failure.text;
        return std::nullopt;
    }
}

QString md5Of(QIODevice& device)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    const bool isRead = readInPieces(device, [&hash](const QByteArray& piece) {
        hash.addData(piece);
        return true;
    });
    return isRead ? QString::fromLatin1(hash.result().toHex()) : QString();
}

} // namespace NelvoDevkit
