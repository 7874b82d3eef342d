#include "services/updatecontrol.h"

#include "services/controlparameters.h"
#include "services/service.h"
#include "services/services.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

namespace NelvoDevkit {

namespace {

using End = PackageDelivery::End;

constexpr qint64 MostBytes = std::numeric_limits<qint64>::max();

const QString& packageKey()
{
    static const QString key = QStringLiteral("package");
    return key;
}

qint64 readBytes(const Parameters& parameters, const QString& name)
{
    return readNumber(name, parameters.value(name), 0, MostBytes, QStringLiteral("a number of bytes"));
}

End readEnd(const QString& name)
{
    static const QMap<QString, End> ends = {{QString(), End::Whole},
                                            {QStringLiteral("whole"), End::Whole},
                                            {QStringLiteral("cut"), End::Cut},
                                            {QStringLiteral("reset"), End::Reset},
                                            {QStringLiteral("stall"), End::Stall}};
    const auto found = ends.find(name);
    if (found == ends.end())
        throw ParameterError{QStringLiteral("parameter \"end\" must be whole, cut, reset or stall")};
    return *found;
}

PackageDelivery readDelivery(const Parameters& parameters)
{
    const QString after = QStringLiteral("after");
    const QString announced = QStringLiteral("announced");
    const QString paceBytes = QStringLiteral("paceBytes");
    const QString paceMilliseconds = QStringLiteral("paceMilliseconds");
    PackageDelivery delivery;
    delivery.end = readEnd(parameters.value(QStringLiteral("end")));
    if (delivery.end != End::Whole)
        delivery.endAfter = readBytes(parameters, after);
    else if (parameters.contains(after))
        throw ParameterError{QStringLiteral("parameter \"after\" goes with cut, reset and stall only")};
    if (parameters.contains(paceBytes))
        delivery.paceBytes = readBytes(parameters, paceBytes);
    if (parameters.contains(paceMilliseconds)) {
        delivery.paceMilliseconds = static_cast<int>(readNumber(
            paceMilliseconds, parameters.value(paceMilliseconds), 1, 60000, QStringLiteral("a number")));
    }
    if (parameters.contains(announced))
        delivery.announcedSize = readBytes(parameters, announced);
    delivery.ignoresRange = readFlag(parameters, QStringLiteral("ignoresRange"));
    delivery.once = readFlag(parameters, QStringLiteral("once"));
    return delivery;
}

QJsonObject toJson(const Release& release)
{
    return {{QStringLiteral("version"), release.version},
            {QStringLiteral("remarks"), release.remarks},
            {QStringLiteral("md5"), release.md5},
            {QStringLiteral("size"), release.size},
            {QStringLiteral("path"), release.path}};
}

HttpReply indentedReply(const QJsonDocument& document)
{
    HttpReply reply = jsonReply(document);
    reply.body = document.toJson(QJsonDocument::Indented);
    return reply;
}

} // namespace

HttpReply UpdateControl::answer(const HttpRequest& request)
{
    static const std::vector<Route<UpdateControl>> routes = {
        {"GET", "/releases", &UpdateControl::listReleases},
        {"POST", "/releases", &UpdateControl::setRelease},
        {"GET", "/packages", &UpdateControl::listPackages},
        {"POST", "/packages", &UpdateControl::addPackage},
        {"POST", "/packages/delivery", &UpdateControl::setDelivery},
    };
    return dispatch(*this, routes, request);
}

HttpReply UpdateControl::listReleases(const HttpRequest& /*request*/)
{
    QJsonObject list;
    const QMap<QString, Release> releases = m_services.updates().releases();
    for (auto release = releases.begin(); release != releases.end(); ++release)
        list.insert(release.key(), toJson(*release));
    return indentedReply(QJsonDocument(list));
}

//! A package of the package server provides address, size and MD5; parameters replace them.
HttpReply UpdateControl::setRelease(const HttpRequest& request)
{
    const auto set = [&] {
        const QString productId = QStringLiteral("productId");
        const QString version = QStringLiteral("version");
        const QString remarks = QStringLiteral("remarks");
        const QString md5 = QStringLiteral("md5");
        const QString size = QStringLiteral("size");
        const QString path = QStringLiteral("path");
        const Parameters parameters =
            readParameters(request, {productId, version, remarks, packageKey(), md5, size, path});
        const QString product = readText(parameters, productId, QStringLiteral("the id of a product"));
        Release release;
        if (parameters.contains(packageKey()))
            release = m_services.packageRelease(knownPackage(parameters.value(packageKey())), {}, {});
        else
            readText(parameters, path, QStringLiteral("the package's URL, unless there is \"package\""));
        release.version = readText(parameters, version, QStringLiteral("a version"));
        release.remarks = parameters.value(remarks);
        release.md5 = parameters.value(md5, release.md5);
        release.path = parameters.value(path, release.path);
        if (parameters.contains(size))
            release.size = readBytes(parameters, size);
        m_services.updates().setRelease(product, release);
    };
    return whenParametersAreRight(set, "release set\n");
}

HttpReply UpdateControl::listPackages(const HttpRequest& /*request*/)
{
    QJsonObject list;
    const QStringList names = m_services.packages().names();
    for (const QString& name : names)
        list.insert(name, m_services.packageUrl(name));
    return indentedReply(QJsonDocument(list));
}

HttpReply UpdateControl::addPackage(const HttpRequest& request)
{
    const auto add = [&] {
        const QString name = QStringLiteral("name");
        const QString file = QStringLiteral("file");
        const QString size = QStringLiteral("size");
        const Parameters parameters = readParameters(request, {name, file, size});
        const QString package = readText(parameters, name, QStringLiteral("the name of a package"));
        if (parameters.contains(file) == parameters.contains(size))
            throw ParameterError{QStringLiteral("there must be either \"file\" or \"size\"")};
        if (parameters.contains(size)) {
            m_services.packages().addGenerated(package, readBytes(parameters, size));
            return;
        }
        const QString fileName = parameters.value(file);
        if (!QFileInfo(fileName).isReadable() || !QFileInfo(fileName).isFile())
            throw ParameterError{QStringLiteral("can't read a file \"%1\"").arg(fileName)};
        m_services.packages().addFile(package, QFileInfo(fileName).absoluteFilePath());
    };
    return whenParametersAreRight(add, "package added\n");
}

HttpReply UpdateControl::setDelivery(const HttpRequest& request)
{
    const auto set = [&] {
        const Parameters parameters = readParameters(
            request, {packageKey(), QStringLiteral("end"), QStringLiteral("after"),
                      QStringLiteral("paceBytes"), QStringLiteral("paceMilliseconds"),
                      QStringLiteral("ignoresRange"), QStringLiteral("announced"), QStringLiteral("once")});
        const QString package = knownPackage(parameters.value(packageKey()));
        m_services.packages().setDelivery(package, readDelivery(parameters));
    };
    return whenParametersAreRight(set, "delivery set\n");
}

QString UpdateControl::knownPackage(const QString& name) const
{
    const QStringList names = m_services.packages().names();
    if (!names.contains(name)) {
        throw ParameterError{QStringLiteral("\"%1\" is no package; parameter \"package\" is one of %2")
                                 .arg(name, listed(names))};
    }
    return name;
}

} // namespace NelvoDevkit
