#include "services/packageservice.h"

#include "services/packages.h"
#include "services/packagestream.h"

#include <QIODevice>
#include <QUrl>

#include <algorithm>
#include <optional>

namespace NelvoDevkit {

namespace {

constexpr char PathPrefix[] = "/packages/";
constexpr char PackageType[] = "application/octet-stream";

constexpr qint64 NoRange = -1;

//! The offset in a header such as "bytes=100-"; NoRange for any other form.
qint64 rangeStart(const HttpRequest& request)
{
    const QByteArray range = request.header("Range");
    if (!range.startsWith("bytes=") || !range.endsWith('-'))
        return NoRange;
    bool isNumber = false;
    const qint64 start = range.mid(6).chopped(1).toLongLong(&isNumber);
    return isNumber && start >= 0 ? start : NoRange;
}

QByteArray sizeText(qint64 size)
{
    return QByteArray::number(size);
}

HttpReply notSatisfiable(qint64 size)
{
    HttpReply reply = textReply(416, "The package has " + sizeText(size) + " bytes\n");
    reply.headers.append({"Content-Range", "bytes */" + sizeText(size)});
    return reply;
}

HttpReply wholeReply(const PackageDelivery& delivery)
{
    HttpReply reply{200, PackageType, {}, {}};
    if (!delivery.ignoresRange)
        reply.headers.append(HttpHeader{"Accept-Ranges", "bytes"});
    return reply;
}

HttpReply partialReply(qint64 start, qint64 size)
{
    HttpReply reply{206, PackageType, {}, {}};
    reply.headers.append(
        {"Content-Range", "bytes " + sizeText(start) + '-' + sizeText(size - 1) + '/' + sizeText(size)});
    return reply;
}

QString nameIn(const QByteArray& path)
{
    return QUrl::fromPercentEncoding(path.mid(static_cast<int>(qstrlen(PathPrefix))));
}

} // namespace

QString packagePath(const QString& name)
{
    return QLatin1String(PathPrefix) + QString::fromLatin1(QUrl::toPercentEncoding(name));
}

PackageService::PackageService(Packages& packages) : m_packages(packages) {}

Delivery PackageService::answer(const HttpRequest& request)
{
    static const std::vector<Route<PackageService, Delivery>> routes = {
        {"GET", QByteArray(PathPrefix) + '*', &PackageService::send},
    };
    return dispatch(*this, routes, request);
}

void PackageService::forgetSession(const HttpRequest& /*request*/) {}

void PackageService::forgetSessions() {}

Delivery PackageService::send(const HttpRequest& request)
{
    const QString name = nameIn(request.path());
    const std::optional<Packages::Shipment> shipment = m_packages.take(name);
    if (!shipment)
        return {textReply(404, "There is no package " + name.toUtf8() + '\n')};
    std::unique_ptr<QIODevice> device = opened(shipment->content);
    if (!device)
        return {textReply(404, "The package " + name.toUtf8() + " can't be read\n")};
    const PackageDelivery& delivery = shipment->delivery;
    const qint64 start = delivery.ignoresRange ? NoRange : rangeStart(request);
    const qint64 size = device->size();
    if (start >= size)
        return {notSatisfiable(size)};
    device->seek(std::max(start, qint64{0}));
    return {start == NoRange ? wholeReply(delivery) : partialReply(start, size), Delivery::Manner::Whole,
            std::make_shared<PackageStream>(m_packages, name, *shipment, std::move(device))};
}

} // namespace NelvoDevkit
