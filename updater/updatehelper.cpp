#include "updater/updatehelper.h"

#include "updater/sourcefile.h"
#include "web/jsonfile.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>

// The warnings of these three functions name this file as their source.
bool readFileBytes(const QString& path, QByteArray& bytes)
{
    return readFile(path, bytes, NELVO_HERE);
}

bool writeFileBytes(const QString& path, const QByteArray& bytes)
{
    return writeFile(path, bytes, NELVO_HERE);
}

bool readJsonObject(const QString& path, QJsonObject& result)
{
    return readJsonFile(path, result, NELVO_HERE);
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
    file.close(); // the mapping remains
    if (!bytes) {
        qWarning().noquote() << NELVO_SOURCE_FILE << __LINE__ << "map failed";
        return false;
    }
    QCryptographicHash hash(QCryptographicHash::Md5);
    // At most what the hash accepts at once, so the digest of a larger file is wrong.
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
