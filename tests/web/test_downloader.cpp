#include "web/downloader.h"

#include "tests/support/files.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "tests/support/systemtexts.h"
#include "tests/support/wine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaMethod>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#endif

Q_DECLARE_METATYPE(std::optional<NelvoDevkit::FaultRule>)

using NelvoDevkit::Fault;
using NelvoDevkit::FaultRule;
using NelvoDevkit::LoggedRequest;
using NelvoDevkit::PackageDelivery;
using TestSupport::contentOf;
using TestSupport::MessageLog;

namespace {

constexpr int Ample = 60000; // no test waits that long
constexpr qint64 Mebi = 1024LL * 1024;
constexpr qint64 PackageSize = 300000;
const QString Package = QStringLiteral("package.zip");

//! A network manager that counts its replies and measures their buffers.
class WatchedManager final : public QNetworkAccessManager
{
public:
    QNetworkReply* reply() const { return findChild<QNetworkReply*>(); }
    int replies() const { return findChildren<QNetworkReply*>().size(); }
    //! The maximum number of unread bytes in a reply when it reported new data.
    qint64 mostBuffered() const { return m_mostBuffered; }

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request,
                                 QIODevice* body) override
    {
        QNetworkReply* reply = QNetworkAccessManager::createRequest(operation, request, body);
        connect(reply, &QNetworkReply::readyRead, this,
                [this, reply] { m_mostBuffered = std::max(m_mostBuffered, reply->bytesAvailable()); });
        return reply;
    }

private:
    qint64 m_mostBuffered = 0;
};

//! \brief The signals of a downloader.
struct Report {
    explicit Report(CDownloader* downloader)
        : started(downloader, &CDownloader::downloadStarted)
        , progress(downloader, &CDownloader::downloadProgress)
        , finished(downloader, &CDownloader::downloadFinished)
        , error(downloader, &CDownloader::downloadError)
    {}

    bool ended() const { return !finished.isEmpty() || !error.isEmpty(); }
    //! The bytes in the last progress signal, -1 without one.
    qint64 received() const { return progress.isEmpty() ? -1 : progress.last().at(1).toLongLong(); }
    QStringList errors() const
    {
        QStringList texts;
        for (const QVariantList& arguments : error)
            texts.append(arguments.at(1).toString());
        return texts;
    }

    QSignalSpy started;
    QSignalSpy progress;
    QSignalSpy finished;
    QSignalSpy error;
};

bool writeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace

//! \brief Destroys a downloader in one of its signals.
class Destroyer : public QObject
{
    Q_OBJECT

public:
    explicit Destroyer(std::unique_ptr<CDownloader>& downloader) : m_downloader(downloader) {}

public Q_SLOTS:
    void destroy() { m_downloader.reset(); }

private:
    std::unique_ptr<CDownloader>& m_downloader;
};

class TestDownloader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void signalsAndSlotsInOrder();
    void networkErrorIsAKnownType();

    void bringsAFile();
    void startIsToldFirst();
    void sizeIsTakenAfterTheStartIsTold();
    void directoryIsMade();
    void sendsNoStandardHeaders();
    void firstDownloadWithResumeAsksForEverything();
    void resumeAsksForTheRestAndAppends();
    void withoutResumeTheWholeIsAppendedToo();
    void addressIsReadTolerantly();
    void redirectIsFollowed();
    void redirectToAnotherOriginIsFollowed();
    void redirectAwayFromHttpsIsAnError();
    void replyIsGoneRightAfterTheEnd();
    void downloadsFollowOneAnother();

    void totalIsTheCallers();
    void totalOfZeroIsReported();
    void serverThatIgnoresRangeMakesTheFileTooLong();
    void completeFileResumedIsAnError();
    void emptyBodyMakesNoFile();
    void emptyBodyLeavesAFileAlone();
    void shortLengthAnnouncedIsNoError();

    void aSecondTransferIsRefused();
    void refusedInSlotOfFinished();
    void refusedInSlotOfEitherError();
    void acceptedInQueuedSlots();

    void errorIsReportedTwice_data();
    void errorIsReportedTwice();
    void errorIsReportedOnceWhereAbortTellsNoEnd();
    void errorPageIsAppendedToo();
    void errorInTheMiddleKeepsWhatIsThere();
    void errorSlotMayPumpEvents_data();
    void errorSlotMayPumpEvents();
    void everyEndIsLogged();
    void cutBodyIsAnErrorOrNone();
    void cutBodyOfUnknownLengthIsNoError();

    void stalledServerMeansNothingHappens();
    void destroyedWhileTransferring();
    void destroyedInASlotOfItsOwn_data();
    void destroyedInASlotOfItsOwn();
    void replyDeletedFromOutside();
    void managerDestroyedFirst();

    void networkStaysCloseToTheDisk();
    void transferEndsThoughTheTargetCannotBeOpened();
    void fullDiskIsLoggedOnce_data();
    void fullDiskIsLoggedOnce();
    void directoryThatCannotBeMade();
    void targetThatOpensLaterGetsEverything();

private:
    //! Starts the transfer of the package to the target.
    bool download(bool resume = true, qint64 total = PackageSize);
    QString target(const QString& name = Package) const { return m_folder->filePath(name); }
    void deliver(PackageDelivery::End end, qint64 endAfter);
    void deliver(const PackageDelivery& delivery) { m_services.packages().setDelivery(Package, delivery); }
    //! Replaces the package by one with that number of generated bytes.
    QByteArray generatePackage(qint64 size);

    TestSupport::StartedServices m_services;
    QByteArray m_content;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<WatchedManager> m_manager;
    std::unique_ptr<CDownloader> m_downloader;
    std::unique_ptr<Report> m_report;
    std::unique_ptr<MessageLog> m_log;
};

void TestDownloader::init()
{
    m_services.reset();
    deliver({});
    m_content = generatePackage(PackageSize);
    m_folder = std::make_unique<QTemporaryDir>();
    m_manager = std::make_unique<WatchedManager>();
    m_downloader = std::make_unique<CDownloader>(m_manager.get());
    m_report = std::make_unique<Report>(m_downloader.get());
    m_log = std::make_unique<MessageLog>();
}

void TestDownloader::cleanup()
{
    m_log.reset();
    m_report.reset();
    m_downloader.reset();
    m_manager.reset();
}

bool TestDownloader::download(bool resume, qint64 total)
{
    QString error;
    return m_downloader->download(m_services.packageUrl(Package), target(), total, error, resume) &&
           error.isEmpty();
}

void TestDownloader::deliver(PackageDelivery::End end, qint64 endAfter)
{
    PackageDelivery delivery;
    delivery.end = end;
    delivery.endAfter = endAfter;
    deliver(delivery);
}

QByteArray TestDownloader::generatePackage(qint64 size)
{
    m_services.packages().addGenerated(Package, size);
    return m_services.packages().bytes(Package, 0, static_cast<int>(size));
}

void TestDownloader::signalsAndSlotsInOrder()
{
    const QMetaObject& meta = CDownloader::staticMetaObject;
    QByteArrayList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        const bool isPrivateSlot =
            method.methodType() == QMetaMethod::Slot && method.access() == QMetaMethod::Private;
        methods.append((isSignal        ? "signal "
                        : isPrivateSlot ? "private slot "
                                        : "") +
                       method.methodSignature() + ' ' + method.parameterNames().join(' '));
    }
    QCOMPARE(methods,
             (QByteArrayList{
                 "signal downloadStarted(QString,qlonglong) filePath bytesTotal",
                 "signal downloadFinished(QString) filePath",
                 "signal downloadProgress(QString,qlonglong,qlonglong) filePath bytesReceived bytesTotal",
                 "signal downloadError(QString,QString) filePath errorString",
                 "private slot onReadyRead() ",
                 "private slot onFinished() ",
                 "private slot onDownloadProgress(qlonglong,qlonglong) bytesReceived bytesTotal",
                 "private slot onError(QNetworkReply::NetworkError) error",
             }));
}

void TestDownloader::networkErrorIsAKnownType()
{
    const QMetaObject& meta = CDownloader::staticMetaObject;
    const QMetaMethod onError = meta.method(meta.indexOfSlot("onError(QNetworkReply::NetworkError)"));
    QCOMPARE(onError.parameterType(0), QMetaType::type("QNetworkReply::NetworkError"));
    QVERIFY(onError.parameterType(0) != QMetaType::UnknownType);
}

void TestDownloader::bringsAFile()
{
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished, (QList<QVariantList>{{target()}}), Ample);
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(contentOf(target()), m_content);
    QCOMPARE(m_report->received(), PackageSize);
    qint64 before = 0;
    for (const QVariantList& progress : m_report->progress) {
        QCOMPARE(progress.at(0).toString(), target());
        QVERIFY(progress.at(1).toLongLong() >= before);
        before = progress.at(1).toLongLong();
        QCOMPARE(progress.at(2).toLongLong(), PackageSize);
    }
    QCOMPARE(m_manager->replies(), 0);
}

void TestDownloader::startIsToldFirst()
{
    QStringList order;
    connect(m_downloader.get(), &CDownloader::downloadStarted, this, [&] {
        order.append(QStringLiteral("started"));
        QCOMPARE(m_manager->replies(), 0);
    });
    connect(m_downloader.get(), &CDownloader::downloadProgress, this, [&] {
        if (!order.endsWith(QStringLiteral("progress")))
            order.append(QStringLiteral("progress"));
    });
    connect(m_downloader.get(), &CDownloader::downloadFinished, this,
            [&] { order.append(QStringLiteral("finished")); });
    QVERIFY(download());
    QCOMPARE(m_report->started, (QList<QVariantList>{{target(), PackageSize}}));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(order, (QStringList{QStringLiteral("started"), QStringLiteral("progress"),
                                 QStringLiteral("finished")}));
}

void TestDownloader::sizeIsTakenAfterTheStartIsTold()
{
    QVERIFY(writeFile(target(), "old"));
    connect(m_downloader.get(), &CDownloader::downloadStarted, this, [this] { QFile::remove(target()); });
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(m_services.onlyRequest().header("Range"), QByteArray("bytes=0-"));
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::directoryIsMade()
{
    const QString deep = target(QStringLiteral("a/b/c/package.zip"));
    QString error;
    QVERIFY(m_downloader->download(m_services.packageUrl(Package), deep, PackageSize, error, true));
    QVERIFY(QFileInfo(deep).dir().exists());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(contentOf(deep), m_content);
}

void TestDownloader::sendsNoStandardHeaders()
{
    QVERIFY(download(false));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QByteArrayList lines;
    const LoggedRequest request = m_services.onlyRequest();
    for (const NelvoDevkit::HttpHeader& header : request.headers)
        lines.append(header.name + ": " + header.value);
    QCOMPARE(request.method, QByteArray("GET"));
    QCOMPARE(request.body, QByteArray());
    const QUrl url(m_services.packageUrl(Package));
    QCOMPARE(request.target, url.path().toLatin1());
    QCOMPARE(lines, (QByteArrayList{"Host: " + url.authority().toLatin1(), "Connection: Keep-Alive",
                                    "Accept-Encoding: gzip, deflate",
                                    "Accept-Language: " + TestSupport::acceptLanguage(),
                                    "User-Agent: Mozilla/5.0"}));
}

void TestDownloader::firstDownloadWithResumeAsksForEverything()
{
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(m_services.onlyRequest().header("Range"), QByteArray("bytes=0-"));
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::resumeAsksForTheRestAndAppends()
{
    constexpr int there = 100001;
    QVERIFY(writeFile(target(), m_content.left(there)));
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(m_services.onlyRequest().header("Range"), QByteArray("bytes=100001-"));
    QCOMPARE(contentOf(target()), m_content);
    QVERIFY(m_report->progress.first().at(1).toLongLong() >= there);
    QCOMPARE(m_report->received(), PackageSize);
}

void TestDownloader::withoutResumeTheWholeIsAppendedToo()
{
    QVERIFY(writeFile(target(), "old"));
    QVERIFY(download(false));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QVERIFY(m_services.onlyRequest().header("Range").isNull());
    QCOMPARE(contentOf(target()), "old" + m_content);
    QCOMPARE(m_report->received(), PackageSize + 3);
}

void TestDownloader::addressIsReadTolerantly()
{
    const auto name = QStringLiteral("a package 包.zip");
    m_services.packages().add(name, "content");
    const QString url = m_services.packageUrl(QStringLiteral("x")).chopped(1) + name;
    QString error;
    QVERIFY(m_downloader->download(url, target(), 7, error, true));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(m_report->errors(), QStringList());
    QVERIFY(m_services.onlyRequest().target.endsWith("/a%20package%20%E5%8C%85.zip"));
    QCOMPARE(contentOf(target()), QByteArray("content"));
}

void TestDownloader::redirectIsFollowed()
{
    m_services.addFault({Fault::Redirect, {}, {}, 0, false});
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::redirectToAnotherOriginIsFollowed()
{
    const auto path = QStringLiteral("/moved");
    const QString moved = m_services.packageUrl(Package);
    m_services.setReply("GET", path, NelvoDevkit::redirectReply(moved.toLatin1()));
    QVERIFY(QUrl(m_services.editorUrl()).authority() != QUrl(moved).authority());
    QString error;
    QVERIFY(m_downloader->download(m_services.editorUrl() + path, target(), PackageSize, error, true));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(m_report->errors(), QStringList());
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::redirectAwayFromHttpsIsAnError()
{
    NelvoDevkit::ServicesOptions options;
    options.https = true;
    TestSupport::StartedServices secure(options);
    const auto path = QStringLiteral("/moved");
    secure.setReply("GET", path, NelvoDevkit::redirectReply(m_services.packageUrl(Package).toLatin1()));
    connect(m_manager.get(), &QNetworkAccessManager::sslErrors, this,
            [](QNetworkReply* reply) { reply->ignoreSslErrors(); });
    QString error;
    QVERIFY(m_downloader->download(secure.editorUrl() + path, target(), PackageSize, error, true));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(secure.log().requests().size(), 1);
    const auto insecure = QStringLiteral("Insecure redirect");
    QCOMPARE(m_report->errors(), (QStringList{insecure, insecure}));
    QVERIFY(m_report->finished.isEmpty());
    QVERIFY(m_services.log().requests().isEmpty());
    QVERIFY(!QFileInfo::exists(target()));
}

//! The reply is deleted before a queued slot of downloadFinished runs.
void TestDownloader::replyIsGoneRightAfterTheEnd()
{
    int replies = -1;
    connect(
        m_downloader.get(), &CDownloader::downloadFinished, this,
        [this, &replies] { replies = m_manager->replies(); }, Qt::QueuedConnection);
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(replies != -1, Ample);
    QCOMPARE(replies, 0);
}

void TestDownloader::downloadsFollowOneAnother()
{
    for (int i = 1; i <= 3; ++i) {
        QFile::remove(target());
        QVERIFY(download());
        QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), i, Ample);
        QCOMPARE(contentOf(target()), m_content);
        QCOMPARE(m_report->received(), PackageSize); // each download counts from 0
    }
}

void TestDownloader::totalIsTheCallers()
{
    QVERIFY(download(true, 7));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(m_report->started.first().at(1).toLongLong(), 7LL);
    QVERIFY(!m_report->progress.isEmpty());
    for (const QVariantList& progress : m_report->progress)
        QCOMPARE(progress.at(2).toLongLong(), 7LL);
}

void TestDownloader::totalOfZeroIsReported()
{
    QVERIFY(download(true, 0));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QVERIFY(!m_report->progress.isEmpty());
    for (const QVariantList& progress : m_report->progress)
        QCOMPARE(progress.at(2).toLongLong(), 0LL);
}

void TestDownloader::serverThatIgnoresRangeMakesTheFileTooLong()
{
    constexpr int there = 1000;
    QVERIFY(writeFile(target(), m_content.left(there)));
    PackageDelivery delivery;
    delivery.ignoresRange = true;
    deliver(delivery);
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(m_report->finished.size(), 1);
    QCOMPARE(m_log->warnings(), QStringList{QStringLiteral("request finished with code 200")});
    QCOMPARE(contentOf(target()), m_content.left(there) + m_content);
    QCOMPARE(m_report->received(), PackageSize + there);
}

//! The body of the rejection is appended to the file, like any other body.
void TestDownloader::completeFileResumedIsAnError()
{
    QVERIFY(writeFile(target(), m_content));
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    const QString text = QStringLiteral("Error transferring %1 - server replied: Range Not Satisfiable")
                             .arg(m_services.packageUrl(Package));
    QCOMPARE(m_report->errors(), (QStringList{text, text}));
    QVERIFY(m_report->finished.isEmpty());
    QVERIFY(m_log->warnings().contains(QStringLiteral("request finished with code 416")));
    QVERIFY(contentOf(target()).startsWith(m_content));
    QVERIFY(QFileInfo(target()).size() > PackageSize);
}

void TestDownloader::emptyBodyMakesNoFile()
{
    m_services.packages().add(Package, {});
    QVERIFY(download(false, 0));
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QVERIFY(m_report->error.isEmpty());
    QVERIFY(!QFileInfo::exists(target()));
}

void TestDownloader::emptyBodyLeavesAFileAlone()
{
    m_services.packages().add(Package, {});
    QVERIFY(writeFile(target(), "old"));
    QVERIFY(download(false, 0));
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QCOMPARE(contentOf(target()), QByteArray("old"));
}

void TestDownloader::shortLengthAnnouncedIsNoError()
{
    PackageDelivery delivery;
    delivery.announcedSize = 1000;
    deliver(delivery);
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(contentOf(target()), m_content.left(1000));
}

void TestDownloader::aSecondTransferIsRefused()
{
    deliver(PackageDelivery::End::Stall, 1000);
    QVERIFY(download());
    const QString other = target(QStringLiteral("other/file"));
    QString error;
    QVERIFY(!m_downloader->download(m_services.packageUrl(Package), other, 1, error, false));
    QCOMPARE(error, QStringLiteral("download already exist: %1").arg(other));
    QCOMPARE(m_report->started.size(), 1);
    QCOMPARE(m_manager->replies(), 1);
    QVERIFY(!QFileInfo(other).dir().exists());

    deliver({});
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished, (QList<QVariantList>{{target()}}), Ample);
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(contentOf(target()), m_content);
    QCOMPARE(m_report->progress.last().at(2).toLongLong(), PackageSize);
}

void TestDownloader::refusedInSlotOfFinished()
{
    QString error;
    connect(m_downloader.get(), &CDownloader::downloadFinished, this, [&] {
        QVERIFY(!m_downloader->download(m_services.packageUrl(Package), target(), PackageSize, error, true));
    });
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(error, QStringLiteral("download already exist: %1").arg(target()));
    QFile::remove(target());
    QVERIFY(download()); // accepted, because the slots have returned
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 2, Ample);
    QCOMPARE(m_report->started.size(), 2);
}

void TestDownloader::refusedInSlotOfEitherError()
{
    m_services.addFault({Fault::Status, {}, {}, 404, true});
    QStringList refusals;
    connect(m_downloader.get(), &CDownloader::downloadError, this, [&] {
        QString error;
        if (!m_downloader->download(m_services.packageUrl(Package), target(), PackageSize, error, true))
            refusals.append(error);
    });
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    const QString refusal = QStringLiteral("download already exist: %1").arg(target());
    QCOMPARE(refusals, (QStringList{refusal, refusal}));
    QCOMPARE(m_report->started.size(), 1);
    QFile::remove(target());
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QCOMPARE(contentOf(target()), m_content);
    QCOMPARE(refusals.size(), 2);
}

void TestDownloader::acceptedInQueuedSlots()
{
    m_services.addFault({Fault::Refuse, {}, {}, 0, false});
    QVector<bool> accepted;
    connect(
        m_downloader.get(), &CDownloader::downloadError, this,
        [&] {
            m_services.clearFaults();
            accepted.append(download());
        },
        Qt::QueuedConnection);
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QCOMPARE(accepted, (QVector<bool>{true, false})); // the second slot runs during the new transfer
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::errorIsReportedTwice_data()
{
    QTest::addColumn<QString>("url"); // rows with a fault use the package's address instead
    QTest::addColumn<std::optional<FaultRule>>("fault");
    QTest::addColumn<QString>("text");

    const auto status = [this](const char* name, int code, const char* reason) {
        QTest::newRow(name) << QString() << std::optional<FaultRule>({Fault::Status, {}, {}, code, false})
                            << QStringLiteral("Error transferring %1 - server replied: %2")
                                   .arg(m_services.packageUrl(Package), QLatin1String(reason));
    };
    const auto fault = [](const char* name, Fault kind, int value, const char* text) {
        QTest::newRow(name) << QString() << std::optional<FaultRule>({kind, {}, {}, value, false})
                            << QString::fromLatin1(text);
    };
    const auto address = [](const char* name, const char* url, const char* text) {
        QTest::newRow(name) << QString::fromLatin1(url) << std::optional<FaultRule>()
                            << QString::fromLatin1(text);
    };
    status("403", 403, "Forbidden");
    status("404", 404, "Not Found");
    status("500", 500, "Internal Server Error");
    status("503", 503, "Service Unavailable");
    fault("401", Fault::Status, 401, "Host requires authentication");
    fault("refused", Fault::Refuse, 0, "Connection refused");
    fault("reset", Fault::Reset, 0, "Connection closed");
    fault("endless redirect", Fault::EndlessRedirect, 0, "Too many redirects");
    address("unknown scheme", "nowhere://host/package.zip", "Protocol \"nowhere\" is unknown");
    address("no address", "", "Protocol \"\" is unknown");
}

void TestDownloader::errorIsReportedTwice()
{
    QFETCH(QString, url);
    QFETCH(std::optional<FaultRule>, fault);
    QFETCH(QString, text);
    if (fault && fault->fault == Fault::Reset && TestSupport::isUnderWine())
        QSKIP(TestSupport::ResetsGoUnnoticed);
    if (fault) {
        url = m_services.packageUrl(Package);
        m_services.addFault(*fault);
    }
    QString error;
    QVERIFY(m_downloader->download(url, target(), PackageSize, error, true));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(m_report->errors(), (QStringList{text, text}));
    for (const QVariantList& arguments : m_report->error)
        QCOMPARE(arguments.at(0).toString(), target());
    QTRY_COMPARE(m_manager->replies(), 0);

    // No event of the failed transfer arrives during the next one.
    m_services.clearFaults();
    QFile::remove(target());
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QCOMPARE(m_report->error.size(), 2);
    QCOMPARE(contentOf(target()), m_content);
}

//! The reply for a missing local file has finished before the abort, which then emits no further signal.
void TestDownloader::errorIsReportedOnceWhereAbortTellsNoEnd()
{
    const QUrl missing = QUrl::fromLocalFile(m_folder->filePath(QStringLiteral("missing")));
    QString error;
    QVERIFY(m_downloader->download(missing.toString(), target(), 1, error, false));
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QTRY_COMPARE(m_manager->replies(), 0);
    QCOMPARE(m_report->error.size(), 1);
    QVERIFY(m_report->finished.isEmpty());
    QVERIFY(m_log->warnings().isEmpty());
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QCOMPARE(m_report->error.size(), 1);
}

//! The body is written without a check of the status; the checksum detects the error.
void TestDownloader::errorPageIsAppendedToo()
{
    QVERIFY(writeFile(target(), "old"));
    m_services.addFault({Fault::Status, {}, {}, 500, false});
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(m_report->error.size(), 2);
    QCOMPARE(contentOf(target()), QByteArray("oldsimulated fault\n"));
}

void TestDownloader::errorInTheMiddleKeepsWhatIsThere()
{
    constexpr int there = 1000;
    QVERIFY(writeFile(target(), m_content.left(there)));
    deliver(PackageDelivery::End::Stall, 5000);
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(QFileInfo(target()).size(), qint64(there + 5000), Ample);
    QVERIFY(!m_report->ended());
    m_services.stop();
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(contentOf(target()), m_content.left(there + 5000));
    QVERIFY(m_services.start());

    // The next download continues after the received bytes.
    m_services.log().clear();
    deliver({});
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(QFileInfo(target()).size(), PackageSize, Ample);
    QCOMPARE(m_services.onlyRequest().header("Range"), QByteArray("bytes=6000-"));
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::errorSlotMayPumpEvents_data()
{
    QTest::addColumn<bool>("local");
    QTest::newRow("an HTTP error, whose end may come at any time") << false;
    QTest::newRow("a missing file, whose end comes while the slot pumps") << true;
}

void TestDownloader::errorSlotMayPumpEvents()
{
    QFETCH(bool, local);
    const QString missing = QUrl::fromLocalFile(m_folder->filePath(QStringLiteral("missing"))).toString();
    m_services.addFault({Fault::Status, {}, {}, 404, true});
    QVector<bool> idle;
    connect(m_downloader.get(), &CDownloader::downloadError, this, [this, &idle] {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        idle.append(m_manager->replies() == 0);
    });
    QString error;
    QVERIFY(m_downloader->download(local ? missing : m_services.packageUrl(Package), target(), PackageSize,
                                   error, true));
    QTRY_COMPARE_WITH_TIMEOUT(idle.size(), 2, Ample);
    if (local) // the second report is emitted inside the first
        QCOMPARE(idle, (QVector<bool>{false, true}));
    QCOMPARE(m_report->error.size(), 2);
    QTRY_COMPARE(m_manager->replies(), 0);

    m_services.clearFaults();
    QFile::remove(target());
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
}

//! The first line of an HTTP error is Qt's, because the downloader aborts the reply in its error signal.
void TestDownloader::everyEndIsLogged()
{
    QVERIFY(download());
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QCOMPARE(m_log->warnings(), QStringList{QStringLiteral("request finished with code 206")});
    QCOMPARE(m_log->entries().size(), 1);
    QCOMPARE(m_log->entries().constFirst().file, QStringLiteral("web/downloader.cpp"));

    m_log->clear();
    m_services.addFault({Fault::Status, {}, {}, 404, true});
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->error.size(), 2, Ample);
    QCOMPARE(m_log->warnings(),
             (QStringList{QStringLiteral("QNetworkReplyImplPrivate::error: Internal problem, "
                                         "this method must only be called once."),
                          QStringLiteral("request finished with code 404")}));

    m_log->clear();
    m_services.addFault({Fault::Refuse, {}, {}, 0, false});
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->error.size(), 4, Ample);
    QCOMPARE(m_log->warnings().last(), QStringLiteral("request finished with code 0"));
}

//! A body that ends too early is usually an error for Qt, and sometimes not: this is a race in its network
//! thread. The test checks what holds in both cases.
void TestDownloader::cutBodyIsAnErrorOrNone()
{
    for (const int sent : {0, 1, 5000, 299999}) {
        QFile::remove(target());
        m_report->finished.clear();
        m_report->error.clear();
        deliver(PackageDelivery::End::Cut, sent);
        QVERIFY(download());
        QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
        if (m_report->error.isEmpty()) {
            QCOMPARE(m_report->finished.size(), 1);
        } else {
            const auto closed = QStringLiteral("Connection closed");
            QCOMPARE(m_report->errors(), (QStringList{closed, closed}));
            QVERIFY(m_report->finished.isEmpty());
        }
        QCOMPARE(contentOf(target()), m_content.left(sent));
        QTRY_COMPARE(m_manager->replies(), 0);
    }
}

//! If the reply has no Content-Length, the end of the connection ends the body.
void TestDownloader::cutBodyOfUnknownLengthIsNoError()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, this, [&server] {
        QTcpSocket* socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            if (!socket->readAll().endsWith("\r\n\r\n"))
                return;
            socket->write("HTTP/1.1 200 OK\r\n\r\nhalf of i");
            socket->disconnectFromHost();
        });
    });
    QString error;
    QVERIFY(m_downloader->download(QStringLiteral("http://127.0.0.1:%1/").arg(server.serverPort()), target(),
                                   PackageSize, error, true));
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(contentOf(target()), QByteArray("half of i"));
}

//! The downloader emits no end and no error. The received bytes are on disk.
void TestDownloader::stalledServerMeansNothingHappens()
{
    deliver(PackageDelivery::End::Stall, 1000);
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(QFileInfo(target()).size(), 1000LL, Ample);
    QCOMPARE(contentOf(target()), m_content.left(1000));
    QTest::qWait(300); // an arbitrary time: downloads have no timeout
    QVERIFY(!m_report->ended());
    deliver({});
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::destroyedWhileTransferring()
{
    deliver(PackageDelivery::End::Stall, 1000);
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(QFileInfo(target()).size(), 1000LL, Ample);
    m_downloader.reset();
    QCOMPARE(m_manager->replies(), 0);
    QVERIFY(!m_report->ended());
    deliver({});
    m_downloader = std::make_unique<CDownloader>(m_manager.get());
    m_report = std::make_unique<Report>(m_downloader.get());
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::destroyedInASlotOfItsOwn_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<bool>("fails");
    QTest::newRow("started") << QByteArray(SIGNAL(downloadStarted(QString, qint64))) << false;
    QTest::newRow("progress") << QByteArray(SIGNAL(downloadProgress(QString, qint64, qint64))) << false;
    QTest::newRow("finished") << QByteArray(SIGNAL(downloadFinished(QString))) << false;
    QTest::newRow("error") << QByteArray(SIGNAL(downloadError(QString, QString))) << true;
}

void TestDownloader::destroyedInASlotOfItsOwn()
{
    QFETCH(QByteArray, signal);
    QFETCH(bool, fails);
    if (fails)
        m_services.addFault({Fault::Status, {}, {}, 404, true});
    const Destroyer destroyer(m_downloader);
    connect(m_downloader.get(), signal.constData(), &destroyer, SLOT(destroy()));
    download();
    QTRY_VERIFY_WITH_TIMEOUT(!m_downloader, Ample);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->replies(), 0, Ample);
    QDir(QFileInfo(target()).path()).removeRecursively();
    deliver({});
    m_downloader = std::make_unique<CDownloader>(m_manager.get());
    m_report = std::make_unique<Report>(m_downloader.get());
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::replyDeletedFromOutside()
{
    deliver(PackageDelivery::End::Stall, 1000);
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(QFileInfo(target()).size(), 1000LL, Ample);
    delete m_manager->reply();
    QVERIFY(!m_report->ended());
    deliver({});
    QVERIFY(download());
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QCOMPARE(contentOf(target()), m_content);
}

void TestDownloader::managerDestroyedFirst()
{
    deliver(PackageDelivery::End::Stall, 1000);
    QVERIFY(download());
    const QPointer<QNetworkReply> reply = m_manager->reply();
    QVERIFY(reply);
    m_manager.reset();
    QVERIFY(!reply);
    m_downloader.reset();
    QVERIFY(!m_report->ended());
}

void TestDownloader::networkStaysCloseToTheDisk()
{
    constexpr qint64 size = 64 * Mebi;
    const QByteArray content = generatePackage(size);
    // Qt starts a request before the downloader can limit the buffer, and buffers without a limit until then.
    // So the service sends one byte first and the rest later.
    deliver(PackageDelivery::End::Stall, 1);
    QVERIFY(download(true, size));
    QCOMPARE(m_manager->reply()->readBufferSize(), Mebi);
    QTRY_COMPARE_WITH_TIMEOUT(QFileInfo(target()).size(), 1, Ample);
    deliver({});
    QTRY_VERIFY_WITH_TIMEOUT(m_report->ended(), Ample);
    QVERIFY(m_report->error.isEmpty());
    // Qt's network thread buffers as much again and delivers all of it at the end.
    QVERIFY2(m_manager->mostBuffered() <= 4 * Mebi, qPrintable(QString::number(m_manager->mostBuffered())));
    QVERIFY(contentOf(target()) == content);
    QCOMPARE(m_report->received(), size);
}

void TestDownloader::fullDiskIsLoggedOnce_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("room");

    QTest::newRow("in one of many chunks") << 8 * Mebi << Mebi + 1000;
    QTest::newRow("in the only chunk") << qint64(1000) << qint64(400);
}

//! The test limits the file size instead of filling a disk: the write that reaches the limit is incomplete.
void TestDownloader::fullDiskIsLoggedOnce()
{
#if __has_include(<sys/resource.h>)
    QFETCH(const qint64, size);
    QFETCH(const qint64, room);
    generatePackage(size);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto restored = qScopeGuard([&before] { setrlimit(RLIMIT_FSIZE, &before); });
    const rlimit full{static_cast<rlim_t>(room), before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &full), 0);

    const QString file = target(QStringLiteral("package.zip"));
    QString error;
    for (int transfer = 1; transfer <= 2; ++transfer) {
        QVERIFY(m_downloader->download(m_services.packageUrl(Package), file, size, error, false));
        QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), transfer, Ample);
    }
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(QFileInfo(file).size(), room);
    const QStringList warnings{
        QStringLiteral("write file %1 failed: File too large").arg(file),
        QStringLiteral("request finished with code 200"),
    };
    QCOMPARE(m_log->warnings(), warnings + warnings);
#else
    QSKIP("Windows has no limit of the file size for a process (RLIMIT_FSIZE)");
#endif
}

void TestDownloader::transferEndsThoughTheTargetCannotBeOpened()
{
    constexpr qint64 size = 64 * Mebi; // more than all buffers between the service and the file
    generatePackage(size);
    const QString directory = target(QStringLiteral("gone"));
    const QString file = directory + QStringLiteral("/package.zip");
    QString error;
    QVERIFY(m_downloader->download(m_services.packageUrl(Package), file, size, error, true));
    QVERIFY(QDir().rmdir(directory));
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished, (QList<QVariantList>{{file}}), Ample);
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(m_report->received(), size);
    QVERIFY(!QFileInfo::exists(directory));
    QCOMPARE(m_log->warnings(), QStringList{QStringLiteral("request finished with code 206")});
}

void TestDownloader::directoryThatCannotBeMade()
{
    QVERIFY(writeFile(target(QStringLiteral("file")), "in the way"));
    const QString file = target(QStringLiteral("file/package.zip"));
    QString error;
    QVERIFY(m_downloader->download(m_services.packageUrl(Package), file, PackageSize, error, true));
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QVERIFY(m_report->error.isEmpty());
    QCOMPARE(m_report->received(), PackageSize);
    QCOMPARE(contentOf(target(QStringLiteral("file"))), QByteArray("in the way"));
}

void TestDownloader::targetThatOpensLaterGetsEverything()
{
    constexpr qint64 size = 4 * Mebi;
    constexpr qint64 before = 3 * Mebi;
    const QByteArray content = generatePackage(size);
    deliver(PackageDelivery::End::Stall, before);
    const QString directory = target(QStringLiteral("late"));
    const QString file = directory + QStringLiteral("/package.zip");
    QString error;
    QVERIFY(m_downloader->download(m_services.packageUrl(Package), file, size, error, true));
    QVERIFY(QDir().rmdir(directory));
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->reply()->bytesAvailable(), before, Ample);
    QVERIFY(QDir().mkpath(directory));
    deliver({});
    QTRY_COMPARE_WITH_TIMEOUT(m_report->finished.size(), 1, Ample);
    QVERIFY(contentOf(file) == content);
}

QTEST_GUILESS_MAIN(TestDownloader)
#include "test_downloader.moc"
