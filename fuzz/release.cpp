#include "fuzz/support.h"
#include "updater/updater.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

//! The reply of the update service, and the path of its package.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString directory = Fuzz::pathOf("NelvoUpdate");
    QDir(directory).removeRecursively();
    Fuzz::Network network;
    network.answer("/v1.0/service/sys/productVersion/findLatest", {Fuzz::bytesOf(data, size)});
    network.answer("", {"package"});

    CUpdater updater;
    QObject::connect(&updater, &CUpdater::downloadStarted, [&directory](const QString& filePath) {
        Fuzz::require(filePath.startsWith(directory + QLatin1Char('/')) &&
                      !filePath.mid(directory.size() + 1).contains(QLatin1Char('/')));
    });
    updater.checkVersion(QStringLiteral("http://update"), QStringLiteral("token"), QStringLiteral("product"));
    updater.download();
    QCoreApplication::processEvents();
    return 0;
}
