#include "login/logincache.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVariantMap>

#include <algorithm>

namespace NelvoPlugin {

namespace {

const QString UserKey = QStringLiteral("user");
const QString PasswdKey = QStringLiteral("passwd");
const QString CimUrlListKey = QStringLiteral("cimUrlList");
const QString PdsUrlListKey = QStringLiteral("pdsUrlList");

//! Base64 is an encoding, not a protection. Writing uses Latin-1 and reading uses UTF-8. This is intentional:
//! installed files depend on it. ASCII passes unchanged.
QString encodedPassword(const QString& passwd)
{
    return QString::fromLatin1(passwd.toLatin1().toBase64());
}

QString decodedPassword(const QString& text)
{
    return QString::fromUtf8(QByteArray::fromBase64(text.toLatin1()));
}

QStringList textList(const QVariant& value)
{
    QStringList texts;
    if (value.canConvert<QVariantList>()) {
        const QVariantList elements = value.toList();
        for (const QVariant& element : elements)
            texts.append(element.toString());
    }
    return texts;
}

QVariantList variantList(const QStringList& texts)
{
    QVariantList elements;
    for (const QString& text : texts)
        elements.append(text);
    return elements;
}

UserCacheEntry toEntry(const QVariantMap& map)
{
    UserCacheEntry entry;
    entry.user = map.value(UserKey).toString();
    entry.passwd = map.value(PasswdKey).toString();
    entry.cimUrlList = textList(map.value(CimUrlListKey));
    entry.pdsUrlList = textList(map.value(PdsUrlListKey));
    if (!entry.passwd.isEmpty())
        entry.passwd = decodedPassword(entry.passwd);
    return entry;
}

void insertUnlessNull(QVariantMap& map, const QString& key, const QVariant& value)
{
    if (!value.isNull())
        map.insert(key, value);
}

void moveToFront(QStringList& addresses, const QString& address)
{
    addresses.removeAll(address);
    addresses.prepend(address);
}

} // namespace

QString CLoginCache::cacheFilePath()
{
    return QDir(QCoreApplication::applicationDirPath()).absolutePath() + QStringLiteral("/loginchache.json");
}

void CLoginCache::readUsers(std::list<UserCacheEntry>& users)
{
    users.clear();
    QFile file(cacheFilePath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        return;
    const QJsonArray elements = document.array();
    for (const QJsonValue element : elements)
        users.push_back(toEntry(element.toObject().toVariantMap()));
}

void CLoginCache::writeUsers(const std::list<UserCacheEntry>& users)
{
    QFile file(cacheFilePath());
    if (!file.open(QIODevice::WriteOnly))
        return;
    QJsonArray elements;
    for (UserCacheEntry entry : users) {
        if (!entry.passwd.isEmpty())
            entry.passwd = encodedPassword(entry.passwd);
        elements.append(toJsonObject(entry));
    }
    file.write(QJsonDocument(elements).toJson());
}

void CLoginCache::updateUser(const QString& user, const QString& passwd, const QString& cimUrl,
                             const QString& pdsUrl)
{
    std::list<UserCacheEntry> users;
    readUsers(users);

    UserCacheEntry entry;
    const auto known = std::find_if(users.begin(), users.end(), [&user](const UserCacheEntry& candidate) {
        return candidate.user == user;
    });
    if (known != users.end()) {
        entry.cimUrlList = known->cimUrlList;
        entry.pdsUrlList = known->pdsUrlList;
        users.erase(known);
    }
    entry.user = user;
    entry.passwd = passwd;
    moveToFront(entry.cimUrlList, cimUrl);
    moveToFront(entry.pdsUrlList, pdsUrl);
    users.push_front(entry);

    writeUsers(users);
}

QJsonObject CLoginCache::toJsonObject(const UserCacheEntry& entry)
{
    QVariantMap map;
    insertUnlessNull(map, UserKey, entry.user);
    insertUnlessNull(map, PasswdKey, entry.passwd);
    map.insert(CimUrlListKey, variantList(entry.cimUrlList));
    map.insert(PdsUrlListKey, variantList(entry.pdsUrlList));
    return QJsonObject::fromVariantMap(map);
}

} // namespace NelvoPlugin
