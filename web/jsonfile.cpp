#include "web/jsonfile.h"

#include <QByteArray>
#include <QDebug>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

void warnOfFile(const QFile& file, const QMessageLogger& here)
{
    here.warning().noquote() << "open file " << file.fileName() << "failed:" << file.errorString();
}

} // namespace

QJsonDocument parseJson(const QByteArray& text, const QMessageLogger& here)
{
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (document.isNull())
        here.warning().noquote() << "parse json failed:" << error.errorString();
    return document;
}

bool readFile(const QString& path, QByteArray& bytes, const QMessageLogger& here)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        warnOfFile(file, here);
        return false;
    }
    bytes = file.readAll();
    return true;
}

bool writeFile(const QString& path, const QByteArray& bytes, const QMessageLogger& here)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
        warnOfFile(file, here);
        return false;
    }
    return true;
}

bool readJsonFile(const QString& path, QJsonObject& result, const QMessageLogger& here)
{
    QByteArray text;
    if (!readFile(path, text, here))
        return false;
    const QJsonDocument document = parseJson(text, here);
    if (document.isNull())
        return false;
    result = document.object();
    return true;
}
