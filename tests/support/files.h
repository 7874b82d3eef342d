#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

namespace TestSupport {

//! The content of the file; empty if it cannot be read.
inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

//! The JSON object in the file; empty if there is none.
inline QJsonObject jsonOf(const QString& path)
{
    return QJsonDocument::fromJson(contentOf(path)).object();
}

//! The MD5 of the bytes, in hexadecimal digits.
inline QString md5(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

} // namespace TestSupport
