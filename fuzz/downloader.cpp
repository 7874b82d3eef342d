#include "web/downloader.h"

#include "fuzz/support.h"

#include <QCoreApplication>
#include <QFile>
#include <QNetworkAccessManager>

//! The download of a package. The first two bytes of the input determine its pieces and whether it fails.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const QByteArray package = Fuzz::bytesOf(data + 2, size - 2);
    const bool fails = data[1] % 2 == 1;
    const bool resumes = data[1] / 2 % 2 == 1;
    Fuzz::Network network;
    network.answer("", {package, fails ? 500 : 206, {}, data[0] + 1});

    const QByteArray before = "partial";
    const QString file = Fuzz::writeFile("download", before);
    QNetworkAccessManager manager;
    CDownloader downloader(&manager);
    int ends = 0;
    QObject::connect(&downloader, &CDownloader::downloadFinished, [&ends] { ++ends; });
    QObject::connect(&downloader, &CDownloader::downloadError, [&ends] { ++ends; });
    const auto address = QStringLiteral("http://package/a.zip");
    const int total = before.size() + package.size();
    QString error;
    Fuzz::require(downloader.download(address, file, total, error, resumes));
    Fuzz::require(!downloader.download(address, file, total, error, resumes));
    while (ends == 0)
        QCoreApplication::processEvents();

    QFile written(file);
    Fuzz::require(written.open(QIODevice::ReadOnly) && written.readAll() == before + package);
    return 0;
}
