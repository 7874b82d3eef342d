#include "bench/measure.h"
#include "bench/processmemory.h"
#include "package/updatepackage.h"
#include "services/generatedfile.h"
#include "tasks/threadpool.h"
#include "tests/support/startedservices.h"
#include "updater/unzippackage.h"
#include "updater/updatehelper.h"
#include "web/downloader.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QTimer>
#include <QVector>

#include <cstdio>

//! Compares the steps of the self-update with tools: the download with curl, the checksum with md5sum, the
//! unpacking with unzip. Also measures how long the window processes no event during the unpacking.

namespace {

constexpr int Mebibyte = 1024 * 1024;
constexpr qint64 Gibibyte = 1024LL * Mebibyte;
constexpr int SmallFile = 2048;
constexpr int Rounds = 5;

//! The last size is one gibibyte.
const QVector<int> MebibyteSizes{256, 512, 1024};

const auto DownloadMode = QStringLiteral("--download");

//! The time and memory of one download.
struct Transfer {
    double milliseconds = 0;
    double growth = 0; //!< increase of the peak resident memory, in bytes
};

void requireSize(const QString& path, qint64 size)
{
    if (QFileInfo(path).size() != size)
        qFatal("%s has %lld bytes, not %lld", qUtf8Printable(path), QFileInfo(path).size(), size);
}

//! Downloads a file and prints the time and the memory. Runs in a separate process, which has no other data
//! in memory.
int downloadHere(const QString& url, const QString& path, qint64 size)
{
    QNetworkAccessManager manager;
    CDownloader downloader(&manager);
    QEventLoop loop;
    QObject::connect(&downloader, &CDownloader::downloadFinished, &loop, &QEventLoop::quit);
    QObject::connect(&downloader, &CDownloader::downloadError, &loop, [&loop] { loop.exit(1); });
    const double before = Bench::residentBytes();
    int failed = 0;
    const double elapsed = Bench::milliseconds([&] {
        QString error;
        downloader.download(url, path, size, error, true);
        failed = loop.exec();
    });
    std::printf("%f %f\n", elapsed, Bench::peakResidentBytes() - before);
    return failed;
}

//! Downloads a file in a separate process, checks the size of the file and removes it.
Transfer downloadBeside(const QString& url, const QString& path, qint64 size)
{
    const QByteArray output = Bench::outputOf(QCoreApplication::applicationFilePath(),
                                              {DownloadMode, url, path, QString::number(size)});
    requireSize(path, size);
    QFile::remove(path);
    const QList<QByteArray> figures = output.simplified().split(' ');
    return {figures.at(0).toDouble(), figures.at(1).toDouble()};
}

double curlMilliseconds(const QString& url, const QString& path)
{
    return 1000 *
           Bench::outputOf(QStringLiteral("curl"),
                           {QStringLiteral("--silent"), QStringLiteral("--fail"), QStringLiteral("--output"),
                            path, QStringLiteral("--write-out"), QStringLiteral("%{time_total}"), url})
               .toDouble();
}

void measureDownload(const QString& directory)
{
    TestSupport::StartedServices services;
    const auto name = QStringLiteral("package.zip");
    const QString url = services.packageUrl(name);
    const QString path = directory + QLatin1String("/download");
    QVector<double> scaling;
    for (const int size : MebibyteSizes) {
        const qint64 bytes = static_cast<qint64>(size) * Mebibyte;
        services.packages().addGenerated(name, bytes);
        QVector<double> times;
        for (int round = 0; round < Rounds; ++round)
            times.append(downloadBeside(url, path, bytes).milliseconds);
        scaling.append(Bench::median(times));
    }

    constexpr int downloadRounds = 11;
    QVector<double> own;
    QVector<double> curl;
    double growth = 0;
    for (int round = 0; round < downloadRounds; ++round) {
        const Transfer transfer = downloadBeside(url, path, Gibibyte);
        own.append(transfer.milliseconds);
        growth = qMax(growth, transfer.growth);

        curl.append(curlMilliseconds(url, path));
        requireSize(path, Gibibyte);
        QFile::remove(path);
    }
    Bench::printRatio("download of 1 GiB / curl", Bench::median(own), Bench::median(curl), "ms", 0.8);
    Bench::printScaling("  MiB", MebibyteSizes, scaling, "ms");
    Bench::printFigure("  growth of the peak resident memory", growth / Mebibyte, "MiB", 32);
}

void writeLargeFile(const QString& path, qint64 size)
{
    QFile file(path);
    NelvoDevkit::GeneratedFile content(size);
    if (!file.open(QIODevice::WriteOnly) || !content.open(QIODevice::ReadOnly))
        qFatal("cannot create the file for the checksum");
    while (!content.atEnd())
        file.write(content.read(Mebibyte));
}

void measureChecksum(const QString& directory)
{
    const QString path = directory + QLatin1String("/checksum");
    QVector<double> scaling;
    for (const int size : MebibyteSizes) {
        writeLargeFile(path, static_cast<qint64>(size) * Mebibyte);
        scaling.append(Bench::milliseconds([&path] { checkMd5(path, {}); }));
    }
    QString expected;
    QVector<double> own;
    QVector<double> md5sum;
    for (int round = 0; round < Rounds; ++round) {
        md5sum.append(Bench::milliseconds([&] {
            expected = QString::fromLatin1(Bench::outputOf(QStringLiteral("md5sum"), {path}).left(32));
        }));
        bool right = false;
        own.append(Bench::milliseconds([&] { right = checkMd5(path, expected); }));
        if (!right)
            qFatal("the library's checksum differs from md5sum's");
    }
    const double growth = Bench::growthDuring(&Bench::ownBytes, [&] { checkMd5(path, expected); });
    QFile::remove(path);
    Bench::printRatio("MD5 of 1 GiB / md5sum", Bench::median(own), Bench::median(md5sum), "ms", 1.1);
    Bench::printScaling("  MiB", MebibyteSizes, scaling, "ms");
    Bench::printFigure("  growth of the memory that is no mapping", growth / Mebibyte, "MiB", 1);
}

//! Bytes that compress like the files of a program: neither constant nor random.
QByteArray fileContent(int seed, int size)
{
    QByteArray content;
    content.reserve(size + 32);
    quint32 state = static_cast<quint32>(seed) + 1;
    while (content.size() < size) {
        state = state * 1664525U + 1013904223U;
        content += "value " + QByteArray::number(state) + '\n';
    }
    content.truncate(size);
    return content;
}

//! A package with `count` files of `size` bytes, a hundred in each directory.
void writePackage(const QString& path, int count, int size)
{
    QVector<NelvoDevkit::PackageEntry> entries;
    for (int index = 0; index < count; ++index) {
        entries.append(
            {QStringLiteral("directory%1/file%2.dat").arg(index / 100).arg(index), fileContent(index, size)});
    }
    QString error;
    const std::optional<QByteArray> package = NelvoDevkit::packEntries(entries, &error);
    QFile file(path);
    if (!package || !file.open(QIODevice::WriteOnly) || file.write(*package) != package->size())
        qFatal("cannot create the package: %s", qUtf8Printable(error));
}

void requireFiles(const QString& directory, int count)
{
    int found = 0;
    QDir top(directory);
    const QStringList names = top.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : names)
        found += QDir(top.filePath(name)).entryList(QDir::Files).size();
    if (found != count)
        qFatal("%s has %d files, not %d", qUtf8Printable(directory), found, count);
}

//! The longest time between two timer events on this thread while another thread runs the task.
double longestGap(const std::function<bool()>& task)
{
    QEventLoop loop;
    QElapsedTimer sinceEvent;
    qint64 longest = 0;
    const auto note = [&] { longest = qMax(longest, sinceEvent.nsecsElapsed()); };
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(1);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        note();
        sinceEvent.start();
    });
    VCIM::ThreadPool::instance()->start(task, [&loop](bool done) {
        if (!done)
            qFatal("the package could not be unpacked");
        loop.quit();
    });
    sinceEvent.start();
    timer.start();
    loop.exec();
    note();
    return static_cast<double>(longest) / 1e6;
}

bool unzip(const QString& package, const QString& target)
{
    Bench::outputOf(QStringLiteral("unzip"), {QStringLiteral("-q"), package, QStringLiteral("-d"), target});
    return true;
}

//! Prints the figures of unpacking a package. Returns the library's time in milliseconds.
double measureUnpacking(const char* what, const QString& directory, int count, int size)
{
    const QString package = directory + QLatin1String("/package.zip");
    const QString target = directory + QLatin1String("/unpacked");
    writePackage(package, count, size);
    const auto checkAndRemove = [&] {
        requireFiles(target, count);
        QDir(target).removeRecursively();
    };
    QVector<double> own;
    QVector<double> other;
    for (int round = 0; round < Rounds; ++round) {
        own.append(Bench::milliseconds([&] { unzipPackage(package, target); }));
        checkAndRemove();
        other.append(Bench::milliseconds([&] { unzip(package, target); }));
        checkAndRemove();
    }
    Bench::printRatio(what, Bench::median(own), Bench::median(other), "ms", 1.1);

    QVector<double> gap;
    QVector<double> otherGap;
    for (int round = 0; round < Rounds; ++round) {
        gap.append(longestGap([&] { return unzipPackage(package, target); }));
        checkAndRemove();
        otherGap.append(longestGap([&] { return unzip(package, target); }));
        checkAndRemove();
    }
    Bench::printFigure("  longest gap between the window's events", Bench::median(gap), "ms", 50);
    Bench::printRatio("  that gap / with unzip at work", Bench::median(gap), Bench::median(otherGap), "ms",
                      2);
    return Bench::median(own);
}

void measureLargeEntry(const QString& directory)
{
    constexpr int size = 256 * Mebibyte;
    const QString package = directory + QLatin1String("/package.zip");
    const QString target = directory + QLatin1String("/unpacked");
    writePackage(package, 1, size);
    const double growth = Bench::growthDuring(&Bench::ownBytes, [&] { unzipPackage(package, target); });
    requireFiles(target, 1);
    QDir(target).removeRecursively();
    Bench::printFigure("unpacking an entry of 256 MiB: growth of the memory", growth / Mebibyte, "MiB", 32);
}

//! Compares a large package with several small packages that together have as many files. The time of the
//! file system, which grows with the number of files, is then the same on both sides.
void measureGrowth(const char* what, const QString& directory, int packages)
{
    constexpr int count = 1000;
    const QString small = directory + QLatin1String("/small.zip");
    const QString large = directory + QLatin1String("/large.zip");
    const QString target = directory + QLatin1String("/unpacked");
    writePackage(small, count, SmallFile);
    writePackage(large, packages * count, SmallFile);
    QVector<double> one;
    QVector<double> several;
    for (int round = 0; round < Rounds; ++round) {
        one.append(Bench::milliseconds([&] { unzipPackage(large, target); }));
        requireFiles(target, packages * count);
        QDir(target).removeRecursively();
        several.append(Bench::milliseconds([&] {
            for (int index = 0; index < packages; ++index)
                unzipPackage(small, target + QLatin1Char('/') + QString::number(index));
        }));
        QDir(target).removeRecursively();
    }
    Bench::printRatio(what, Bench::median(one), Bench::median(several), "ms", 1.25);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == DownloadMode)
        return downloadHere(arguments.value(2), arguments.value(3), arguments.value(4).toLongLong());

    const QTemporaryDir directory;
    measureDownload(directory.path());
    measureChecksum(directory.path());

    measureUnpacking("200 files of 1 MiB / unzip", directory.path(), 200, Mebibyte);
    const double few = measureUnpacking("1,000 small files / unzip", directory.path(), 1000, SmallFile);
    const double some = measureUnpacking("2,000 small files / unzip", directory.path(), 2000, SmallFile);
    const double many = measureUnpacking("4,000 small files / unzip", directory.path(), 4000, SmallFile);
    Bench::printScaling("  small files", {1000, 2000, 4000}, {few, some, many}, "ms");
    measureUnpacking("10,000 small files / unzip", directory.path(), 10000, SmallFile);
    measureLargeEntry(directory.path());
    measureGrowth("3,000 files / three packages of 1,000", directory.path(), 3);
    measureGrowth("10,000 files / ten packages of 1,000", directory.path(), 10);
    return 0;
}
