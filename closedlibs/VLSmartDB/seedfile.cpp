#include "seedfile.h"

#include "database.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace VLSmartDB {

namespace {

QJsonObject objectFrom(const QJsonValue& value, const QString& where)
{
    if (!value.isObject())
        throw DatabaseError{QStringLiteral("%1 must be an object").arg(where)};
    return value.toObject();
}

//! Detects misspelt members.
void allowOnly(const QStringList& names, const QJsonObject& object, const QString& where)
{
    const QStringList members = object.keys();
    for (const QString& member : members) {
        if (!names.contains(member))
            throw DatabaseError{QStringLiteral("%1 has an unknown member \"%2\"").arg(where, member)};
    }
}

QString textMember(const QJsonObject& object, const QString& where, const QString& name)
{
    QString text = object.value(name).toString();
    if (text.isEmpty())
        throw DatabaseError{QStringLiteral("%1 needs a text \"%2\" that is not empty").arg(where, name)};
    return text;
}

QMap<QString, QString> readProperties(const QJsonObject& object, const QString& where)
{
    const QString name = QStringLiteral("properties");
    QMap<QString, QString> properties;
    if (!object.contains(name))
        return properties;
    const QJsonObject members = objectFrom(object.value(name), where + QStringLiteral(": ") + name);
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (!member.value().isString())
            throw DatabaseError{QStringLiteral("%1: property \"%2\" is no text").arg(where, member.key())};
        properties.insert(member.key(), member.value().toString());
    }
    return properties;
}

std::vector<ObjectRecord> readObjects(const QJsonObject& owner, const QString& where, const QString& list);

ObjectRecord readObject(const QJsonValue& value, const QString& where)
{
    const QString children = QStringLiteral("children");
    const QJsonObject object = objectFrom(value, where);
    allowOnly({QStringLiteral("id"), QStringLiteral("name"), QStringLiteral("type"),
               QStringLiteral("properties"), children},
              object, where);
    ObjectRecord record;
    record.id = textMember(object, where, QStringLiteral("id"));
    record.name = textMember(object, where, QStringLiteral("name"));
    record.type = textMember(object, where, QStringLiteral("type"));
    record.properties = readProperties(object, where);
    if (object.contains(children))
        record.children = readObjects(object, where + QStringLiteral(": "), children);
    return record;
}

//! The objects in the array `name` of `owner`; `where` precedes the name in messages.
std::vector<ObjectRecord> readObjects(const QJsonObject& owner, const QString& where, const QString& list)
{
    const QJsonValue value = owner.value(list);
    if (!value.isArray())
        throw DatabaseError{QStringLiteral("%1\"%2\" must be an array").arg(where, list)};
    const QJsonArray array = value.toArray();
    std::vector<ObjectRecord> records;
    records.reserve(static_cast<std::size_t>(array.size()));
    for (int i = 0; i < array.size(); ++i)
        records.push_back(readObject(array.at(i), QStringLiteral("%1%2[%3]").arg(where, list).arg(i)));
    return records;
}

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw DatabaseError{file.errorString()};
    return file.readAll();
}

QJsonObject parse(const QByteArray& json)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (document.isNull()) {
        const int line = 1 + json.left(error.offset).count('\n');
        throw DatabaseError{QStringLiteral("no JSON, line %1: %2").arg(line).arg(error.errorString())};
    }
    if (!document.isObject())
        throw DatabaseError{QStringLiteral("must hold a JSON object")};
    return document.object();
}

} // namespace

std::vector<ObjectRecord> readSeedFile(const QString& fileName)
{
    const QString list = QStringLiteral("objects");
    const QJsonObject root = parse(contentOf(fileName));
    allowOnly({list}, root, QStringLiteral("the file"));
    return readObjects(root, QString(), list);
}

} // namespace VLSmartDB
