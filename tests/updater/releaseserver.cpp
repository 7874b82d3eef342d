#include "tests/updater/releaseserver.h"
#include "tests/support/files.h"

#include "tests/updater/ziparchive.h"

using NelvoDevkit::LoggedRequest;
using NelvoDevkit::PackageDelivery;

namespace {

const auto Product = QStringLiteral("nelvo-editor-test");
const auto PackageName = QStringLiteral("NelvoEditor.zip");

} // namespace

void ReleaseServer::reset()
{
    ZipArchive archive;
    archive.add("NelvoEditor.exe", QByteArray(200000, 'x'));
    archive.add("updateConfig.json", R"({"version": "9.9"})");
    archive.add("qml/Main.qml", "Item {}");
    offer(archive.bytes());
    m_services.log().clear();
}

void ReleaseServer::offer(const QByteArray& package, const QString& version)
{
    m_package = package;
    m_services.packages().add(PackageName, package);
    deliver();
    m_services.updates().setRelease(
        Product, m_services.packageRelease(PackageName, version, QStringLiteral("first\nsecond")));
}

QString ReleaseServer::md5() const
{
    return TestSupport::md5(m_package);
}

void ReleaseServer::stallAfter(qint64 bytes)
{
    PackageDelivery stalled;
    stalled.end = PackageDelivery::End::Stall;
    stalled.endAfter = bytes;
    m_services.packages().setDelivery(PackageName, stalled);
}

void ReleaseServer::deliver()
{
    m_services.packages().setDelivery(PackageName, {});
}

QStringList ReleaseServer::arguments(const QString& step) const
{
    return {step, m_services.updateUrl(), m_services.updates().token(), Product};
}

QByteArrayList ReleaseServer::ranges() const
{
    QByteArrayList found;
    const QVector<LoggedRequest> all = m_services.log().requests();
    for (const LoggedRequest& request : all) {
        if (request.method == "GET")
            found.append(request.header("Range"));
    }
    return found;
}
