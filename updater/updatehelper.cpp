#include "updater/updatehelper.h"

#include "updater/sourcefile.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>

namespace {

void warnOfFile(const QFile& file)
{
    qWarning().noquote() << "open file " << file.fileName() << "failed:" << file.errorString();
}

} // namespace

bool readFileBytes(const QString& path, QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        warnOfFile(file);
        return false;
    }
    bytes = file.readAll();
    return true;
}

bool writeFileBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
        warnOfFile(file);
        return false;
    }
    return true;
}

bool readJsonObject(const QString& path, QJsonObject& result)
{
    QByteArray bytes;
    if (!readFileBytes(path, bytes))
        return false;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (document.isNull()) {
        qWarning().noquote() << "parse json failed:" << error.errorString();
        return false;
    }
    result = document.object();
    return true;
}

bool checkMd5(const QString& filePath, const QString& expectedMd5)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << NELVO_SOURCE_FILE << __LINE__ << "open failed" << file.errorString();
        return false;
    }
    const qint64 size = file.size();
    uchar* const bytes = file.map(0, size);
    file.close(); // the mapping stays
    if (!bytes) {
        qWarning().noquote() << NELVO_SOURCE_FILE << __LINE__ << "map failed";
        return false;
    }
    QCryptographicHash hash(QCryptographicHash::Md5);
    // Never more than the hash can take at once, so the digest of a larger file is a wrong one.
    hash.addData(reinterpret_cast<const char*>(bytes),
                 static_cast<int>(std::min<qint64>(size, std::numeric_limits<int>::max())));
    file.unmap(bytes);
    return QString::fromLatin1(hash.result().toHex()) == expectedMd5.toLower();
}

void removePath(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir())
        QDir(path).removeRecursively();
    else if (info.isFile())
        QFile::remove(path);
}
