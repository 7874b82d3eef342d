#include "updater/unzippackage.h"

#include "bench/processmemory.h"
#include "tasks/threadpool.h"

#include <quazip/quazip.h>
#include <quazip/quazipfile.h>
#include <quazip/quazipnewinfo.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <optional>

namespace {

constexpr qint64 MiB = 1 << 20;
constexpr qint64 GiB = 1 << 30;

//! A mebibyte that packs fast and differs for each number.
QByteArray piece(qint64 number)
{
    QByteArray bytes(static_cast<int>(MiB), 'x');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

bool writeEntry(QuaZip& zip, const QString& name, qint64 size)
{
    constexpr int fast = 1;
    QuaZipFile entry(&zip);
    if (!entry.open(QIODevice::WriteOnly, QuaZipNewInfo(name), nullptr, 0, Z_DEFLATED, fast))
        return false;
    for (qint64 i = 0; i < size / MiB; ++i) {
        if (entry.write(piece(i)) != MiB)
            return false;
    }
    entry.close();
    return entry.getZipError() == ZIP_OK;
}

bool writePackage(const QString& path, int entries, qint64 entrySize)
{
    QuaZip zip(path);
    if (!zip.open(QuaZip::mdCreate))
        return false;
    for (int i = 0; i < entries; ++i) {
        if (!writeEntry(zip, QStringLiteral("entry%1").arg(i), entrySize))
            return false;
    }
    zip.close();
    return zip.getZipError() == ZIP_OK;
}

bool isWhole(const QString& path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() != size)
        return false;
    for (qint64 i = 0; i < size / MiB; ++i) {
        if (file.read(MiB) != piece(i))
            return false;
    }
    return true;
}

//! \brief Measurements of an unpacking on a thread of the pool, as in an update.
struct Unpacking {
    std::optional<bool> success;
    qint64 duration = 0;   //!< milliseconds
    qint64 longestGap = 0; //!< milliseconds between two events of this thread's timer
    double growth = 0;     //!< additional bytes of memory; 0 if the system does not provide the number
};

Unpacking unpack(const QString& package, const QString& directory)
{
    Unpacking seen;
    QElapsedTimer sinceTheStart;
    QElapsedTimer sinceTheTick;
    double most = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        seen.longestGap = std::max(seen.longestGap, sinceTheTick.restart());
        most = std::max(most, Bench::residentBytes());
    });
    const double before = Bench::residentBytes();
    sinceTheStart.start();
    sinceTheTick.start();
    ticker.start(5);
    VCIM::ThreadPool::instance()->start([=] { return unzipPackage(package, directory); },
                                        [&](bool success) {
                                            seen.duration = sinceTheStart.elapsed();
                                            seen.success = success;
                                        });
    // The wait has no timeout, because the task uses these variables until its end. The test program has one.
    while (!seen.success)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    seen.growth = most - before;
    return seen;
}

} // namespace

//! Packages that a program should not read into memory as a whole, with one entry and with several.
class TestUnzipLarge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void entryOfMoreThanTwoGibibytes();
    void packageOfAGibibyte();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_package;
    QString m_dest;
};

void TestUnzipLarge::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_package = m_dir->filePath(QStringLiteral("package.zip"));
    m_dest = m_dir->filePath(QStringLiteral("unpacked"));
}

void TestUnzipLarge::entryOfMoreThanTwoGibibytes()
{
    constexpr qint64 size = 5 * GiB / 2;
    QVERIFY(writePackage(m_package, 1, size));
    const Unpacking seen = unpack(m_package, m_dest);
    QVERIFY(*seen.success);
    QVERIFY(isWhole(m_dest + "/entry0", size));
    // A window would stay responsive: this thread never paused for a large part of the unpacking.
    QVERIFY2(seen.longestGap < seen.duration / 3,
             qPrintable(QStringLiteral("%1 ms of %2 ms").arg(seen.longestGap).arg(seen.duration)));
    QVERIFY2(seen.growth < 32 * MiB, qPrintable(QString::number(seen.growth / MiB)));
    qInfo("%lld ms of %lld ms, %.0f MiB", seen.longestGap, seen.duration, seen.growth / MiB);
}

void TestUnzipLarge::packageOfAGibibyte()
{
    constexpr int entries = 32;
    QVERIFY(writePackage(m_package, entries, GiB / entries));
    const Unpacking seen = unpack(m_package, m_dest);
    QVERIFY(*seen.success);
    for (int i = 0; i < entries; ++i)
        QVERIFY2(isWhole(m_dest + QStringLiteral("/entry%1").arg(i), GiB / entries),
                 qPrintable(QString::number(i)));
    QVERIFY2(seen.longestGap < seen.duration / 3,
             qPrintable(QStringLiteral("%1 ms of %2 ms").arg(seen.longestGap).arg(seen.duration)));
    QVERIFY2(seen.growth < 32 * MiB, qPrintable(QString::number(seen.growth / MiB)));
    qInfo("%lld ms of %lld ms, %.0f MiB", seen.longestGap, seen.duration, seen.growth / MiB);
}

QTEST_GUILESS_MAIN(TestUnzipLarge)
#include "test_unziplarge.moc"
