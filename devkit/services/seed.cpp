#include "services/seed.h"

#include "package/updatepackage.h"
#include "services/packageservice.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cmath>

//! Registers the resources, which a linker would drop from a static library. Must be outside of any
//! namespace.
static void initializeSeedResource()
{
    Q_INIT_RESOURCE(services);
}

namespace NelvoDevkit {

namespace {

//! The error in a seed, as text that follows the file's name.
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

//! Empty if the member is missing.
QJsonArray optionalArray(const QJsonObject& object, const QString& where, const QString& name)
{
    return object.contains(name) ? arrayMember(object, where, name) : QJsonArray();
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

//! Reads the node and its descendants. Each id may occur once in the whole tree.
OrgNode readOrgNode(const QJsonValue& value, const QString& where, QSet<QString>& ids)
{
    const QString list = QStringLiteral("children");
    const QJsonObject object = element(value, where);
    OrgNode node{textMember(object, where, QStringLiteral("value")),
                 textMember(object, where, QStringLiteral("name")),
                 object.value(QStringLiteral("type")).toInt(),
                 {}};
    if (node.type != OrgNode::Organisation && node.type != OrgNode::Department)
        throw SeedError{QStringLiteral("%1: \"type\" must be 1 or 2").arg(where)};
    if (ids.contains(node.id))
        throw SeedError{QStringLiteral("%1: there is a unit \"%2\" already").arg(where, node.id)};
    ids.insert(node.id);
    const QJsonArray children = optionalArray(object, where, list);
    for (int i = 0; i < children.size(); ++i) {
        const QString what = where + QStringLiteral(": ") + place(list, i);
        node.children.push_back(readOrgNode(children.at(i), what, ids));
    }
    return node;
}

OrgNode readOrganisation(const QJsonObject& enterprise, const Enterprise& known, const QString& where)
{
    const QJsonValue organisation = enterprise.value(QStringLiteral("organisation"));
    if (organisation.isUndefined())
        return defaultOrganisation(known.id, known.name);
    QSet<QString> ids;
    return readOrgNode(organisation, where + QStringLiteral(": organisation"), ids);
}

double coordinate(const QJsonObject& object, const QString& where, const QString& name)
{
    const QJsonValue value = object.value(name);
    if (!value.isDouble())
        throw SeedError{QStringLiteral("%1 needs a number \"%2\"").arg(where, name)};
    return value.toDouble();
}

//! The id of the unit that owns the project or model.
QString unitMember(const QJsonObject& object, const QString& where, const OrgTree& tree)
{
    QString id = textMember(object, where, QStringLiteral("deptId"));
    if (tree.nameOf(id).isEmpty())
        throw SeedError{QStringLiteral("%1: there is no unit \"%2\"").arg(where, id)};
    return id;
}

SceneProject readProject(const QJsonObject& object, const QString& where, const OrgTree& tree)
{
    SceneProject project;
    project.id = textMember(object, where, QStringLiteral("id"));
    project.name = textMember(object, where, QStringLiteral("name"));
    project.deptId = unitMember(object, where, tree);
    project.deptName = tree.nameOf(project.deptId);
    project.code = textMember(object, where, QStringLiteral("code"));
    if (object.contains(QStringLiteral("basemap")))
        project.basemap = textMember(object, where, QStringLiteral("basemap"));
    project.proj4 = textMember(object, where, QStringLiteral("proj4"));
    project.x = coordinate(object, where, QStringLiteral("x"));
    project.y = coordinate(object, where, QStringLiteral("y"));
    return project;
}

QVector<SceneProject> readProjects(const QJsonObject& enterprise, const QString& where, const OrgTree& tree)
{
    const QString list = QStringLiteral("projects");
    const QJsonArray array = optionalArray(enterprise, where, list);
    QVector<SceneProject> projects;
    QSet<QString> ids;
    for (int i = 0; i < array.size(); ++i) {
        const QString what = where + QStringLiteral(": ") + place(list, i);
        projects.append(readProject(element(array.at(i), what), what, tree));
        const QString& id = projects.last().id;
        if (ids.contains(id))
            throw SeedError{QStringLiteral("%1: there is a project \"%2\" already").arg(what, id)};
        ids.insert(id);
    }
    return projects;
}

//! The model or drawing, with its name under `nameKey`.
BimModel readModel(const QJsonObject& object, const QString& where, const QString& nameKey,
                   const OrgTree& tree)
{
    const auto number = [&](const QString& name) {
        return wholeNumber(object.value(name), QStringLiteral("%1: \"%2\"").arg(where, name));
    };
    BimModel model;
    model.guid = textMember(object, where, QStringLiteral("nelvo3dId"));
    model.name = textMember(object, where, nameKey);
    model.deptId = unitMember(object, where, tree);
    model.ppid = number(QStringLiteral("ppid"));
    model.profession = number(QStringLiteral("projType"));
    model.size = number(QStringLiteral("projectSize"));
    return model;
}

QVector<BimModel> readModels(const QJsonObject& enterprise, const QString& where, const QString& list,
                             const QString& nameKey, const OrgTree& tree)
{
    const QJsonArray array = optionalArray(enterprise, where, list);
    QVector<BimModel> models;
    QSet<QString> guids;
    for (int i = 0; i < array.size(); ++i) {
        const QString what = where + QStringLiteral(": ") + place(list, i);
        models.append(readModel(element(array.at(i), what), what, nameKey, tree));
        const QString& guid = models.last().guid;
        if (guids.contains(guid))
            throw SeedError{QStringLiteral("%1: there is a model \"%2\" already").arg(what, guid)};
        guids.insert(guid);
    }
    return models;
}

ModelLists readModelLists(const QJsonObject& enterprise, const QString& where, const OrgTree& tree)
{
    return {readModels(enterprise, where, QStringLiteral("bimModels"), QStringLiteral("ppName"), tree),
            readModels(enterprise, where, QStringLiteral("dwgModels"), QStringLiteral("dwgName"), tree)};
}

//! The data of the editor service for the enterprises of readEnterprises, in their order.
std::vector<EnterpriseHoldings> readHoldings(const QJsonObject& root, const Enterprises& known)
{
    const QString list = QStringLiteral("enterprises");
    std::vector<EnterpriseHoldings> holdings;
    const QJsonArray array = root.value(list).toArray();
    for (int i = 0; i < array.size(); ++i) {
        const QString where = place(list, i);
        const QJsonObject object = array.at(i).toObject();
        const auto id = static_cast<qint64>(object.value(QStringLiteral("id")).toDouble());
        const OrgNode organisation = readOrganisation(object, known.value(id), where);
        const OrgTree tree(organisation);
        holdings.push_back(
            {id, organisation, readProjects(object, where, tree), readModelLists(object, where, tree)});
    }
    return holdings;
}

//! Packs the files, whose contents are under their names.
QByteArray packFiles(const QJsonObject& files, const QString& where)
{
    QVector<PackageEntry> entries;
    for (auto file = files.begin(); file != files.end(); ++file)
        entries.append({file.key(), file.value().toString().toUtf8()});
    QString error;
    std::optional<QByteArray> package = packEntries(entries, &error);
    if (!package)
        throw SeedError{QStringLiteral("%1: %2").arg(where, error)};
    return std::move(*package);
}

//! Packs the package of the release and sets its address, size and MD5.
void readPackage(const QJsonObject& object, const QString& where, Release& release,
                 QMap<QString, QByteArray>& packages)
{
    const QString name = textMember(object, where, QStringLiteral("package"));
    const QByteArray content = packFiles(object.value(QStringLiteral("files")).toObject(), where);
    release.path = packagePath(name);
    release.md5 = QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex());
    release.size = content.size();
    packages.insert(name, content);
}

//! A release with a package from "files", or with one at "path" with that size and MD5.
Release readRelease(const QJsonObject& object, const QString& where, QMap<QString, QByteArray>& packages)
{
    Release release;
    release.version = textMember(object, where, QStringLiteral("version"));
    release.remarks = textMember(object, where, QStringLiteral("remarks"));
    if (object.contains(QStringLiteral("files"))) {
        readPackage(object, where, release, packages);
        return release;
    }
    release.path = textMember(object, where, QStringLiteral("path"));
    release.md5 = textMember(object, where, QStringLiteral("md5"));
    release.size = wholeNumber(object.value(QStringLiteral("size")), where + QStringLiteral(": \"size\""));
    return release;
}

//! The data of the update service and the package server; none if the seed has no "updates".
void readUpdates(const QJsonObject& root, Seed& seed)
{
    const QString updates = QStringLiteral("updates");
    const QString list = QStringLiteral("releases");
    if (!root.contains(updates))
        return;
    const QJsonObject object = element(root.value(updates), updates);
    seed.updateToken = textMember(object, updates, QStringLiteral("token"));
    const QJsonArray array = arrayMember(object, updates, list);
    for (int i = 0; i < array.size(); ++i) {
        const QString where = updates + QStringLiteral(": ") + place(list, i);
        const QJsonObject release = element(array.at(i), where);
        const QString productId = textMember(release, where, QStringLiteral("productId"));
        if (seed.releases.contains(productId))
            throw SeedError{QStringLiteral("%1: there is a release of \"%2\" already").arg(where, productId)};
        seed.releases.insert(productId, readRelease(release, where, seed.packages));
    }
}

Seed readSeed(const QJsonObject& root)
{
    const Enterprises enterprises = readEnterprises(root);
    const QString list = QStringLiteral("accounts");
    Seed seed;
    seed.holdings = readHoldings(root, enterprises);
    readUpdates(root, seed);
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
