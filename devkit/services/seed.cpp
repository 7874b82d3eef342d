#include "services/seed.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QStringList>

#include <algorithm>
#include <cmath>

//! Resources of a static library come with it only where they are asked for, outside any namespace.
static void initializeSeedResource()
{
    Q_INIT_RESOURCE(services);
}

namespace NelvoDevkit {

namespace {

//! What is wrong with a seed, in words that follow the file's name.
struct SeedError {
    QString text;
};

using Enterprises = QMap<qint64, Enterprise>;

QJsonArray arrayMember(const QJsonObject& object, const QString& where, const QString& name)
{
    const QJsonValue value = object.value(name);
    if (!value.isArray())
        throw SeedError{QStringLiteral("%1 needs an array \"%2\"").arg(where, name)};
    return value.toArray();
}

QString textMember(const QJsonObject& object, const QString& where, const QString& name)
{
    QString text = object.value(name).toString();
    if (text.isEmpty())
        throw SeedError{QStringLiteral("%1 needs a text \"%2\" that is not empty").arg(where, name)};
    return text;
}

qint64 wholeNumber(const QJsonValue& value, const QString& what)
{
    const double number = value.toDouble(-1);
    if (number < 0 || number > 9007199254740992.0 || std::floor(number) != number)
        throw SeedError{QStringLiteral("%1 must be a whole number from 0 on").arg(what)};
    return static_cast<qint64>(number);
}

QJsonObject element(const QJsonValue& value, const QString& where)
{
    if (!value.isObject())
        throw SeedError{QStringLiteral("%1 must be an object").arg(where)};
    return value.toObject();
}

QString place(const QString& list, int index)
{
    return QStringLiteral("%1[%2]").arg(list).arg(index);
}

Enterprises readEnterprises(const QJsonObject& root)
{
    const QString list = QStringLiteral("enterprises");
    Enterprises enterprises;
    const QJsonArray array = arrayMember(root, QStringLiteral("the seed"), list);
    for (int i = 0; i < array.size(); ++i) {
        const QString where = place(list, i);
        const QJsonObject object = element(array.at(i), where);
        const qint64 id = wholeNumber(object.value(QStringLiteral("id")), where + QStringLiteral(": \"id\""));
        if (enterprises.contains(id))
            throw SeedError{QStringLiteral("%1: there is an enterprise %2 already").arg(where).arg(id)};
        enterprises.insert(id, {id, textMember(object, where, QStringLiteral("name"))});
    }
    return enterprises;
}

QVector<Enterprise> readMembership(const QJsonObject& account, const QString& where, const Enterprises& known)
{
    const QString list = QStringLiteral("enterprises");
    QVector<Enterprise> enterprises;
    const QJsonArray array = arrayMember(account, where, list);
    for (int i = 0; i < array.size(); ++i) {
        const QString what = where + QStringLiteral(": ") + place(list, i);
        const qint64 id = wholeNumber(array.at(i), what);
        if (!known.contains(id))
            throw SeedError{QStringLiteral("%1: there is no enterprise %2").arg(what).arg(id)};
        enterprises.append(known.value(id));
    }
    return enterprises;
}

Seed readSeed(const QJsonObject& root)
{
    const Enterprises enterprises = readEnterprises(root);
    const QString list = QStringLiteral("accounts");
    Seed seed;
    const QJsonArray array = arrayMember(root, QStringLiteral("the seed"), list);
    for (int i = 0; i < array.size(); ++i) {
        const QString where = place(list, i);
        const QJsonObject object = element(array.at(i), where);
        const QString user = textMember(object, where, QStringLiteral("user"));
        if (seed.find(user) != nullptr)
            throw SeedError{QStringLiteral("%1: there is an account \"%2\" already").arg(where, user)};
        seed.accounts.append({user, textMember(object, where, QStringLiteral("password")),
                              readMembership(object, where, enterprises)});
    }
    return seed;
}

QByteArray readFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw SeedError{file.errorString()};
    return file.readAll();
}

QJsonObject parse(const QByteArray& json)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (document.isNull()) {
        const int line = 1 + json.left(error.offset).count('\n');
        throw SeedError{QStringLiteral("no JSON, line %1: %2").arg(line).arg(error.errorString())};
    }
    if (!document.isObject())
        throw SeedError{QStringLiteral("must hold a JSON object")};
    return document.object();
}

} // namespace

const Account* Seed::find(const QString& user) const
{
    const auto found = std::find_if(accounts.begin(), accounts.end(),
                                    [&user](const Account& account) { return account.user == user; });
    return found == accounts.end() ? nullptr : &*found;
}

std::optional<Seed> loadSeed(const QString& fileName, QString* error)
{
    initializeSeedResource();
    const QString file = fileName.isEmpty() ? QStringLiteral(":/nelvo-services/seed.json") : fileName;
    try {
        return readSeed(parse(readFile(file)));
    } catch (const SeedError& wrong) {
        *error = QStringLiteral("seed file %1: %2").arg(file, wrong.text);
        return std::nullopt;
    }
}

} // namespace NelvoDevkit
