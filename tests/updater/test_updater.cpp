#include "updater/updater.h"

#include "tests/support/applicationfile.h"
#include "tests/support/files.h"
#include "tests/support/messagelog.h"
#include "tests/support/row.h"
#include "tests/support/startedservices.h"
#include "tests/support/systemtexts.h"
#include "tests/updater/installation.h"

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QThread>
#include <QThreadPool>
#include <QTimerEvent>
#include <QtTest>

#include <memory>
#include <thread>

using NelvoDevkit::Fault;
using NelvoDevkit::LoggedRequest;
using NelvoDevkit::PackageDelivery;
using NelvoDevkit::Release;
using TestSupport::ApplicationFile;
using TestSupport::json;
using TestSupport::md5;
using TestSupport::MessageLog;
using TestSupport::row;

namespace {

const auto Product = QStringLiteral("nelvo-editor-test");
const auto PackageName = QStringLiteral("NelvoEditor.zip");
const auto CheckPath = QStringLiteral("/v1.0/service/sys/productVersion/findLatest");

//! Records signals of the updater as texts, in order.
class Events
{
public:
    explicit Events(CUpdater& updater)
    {
        const auto add = [this](const QString& text) { m_events.append(text); };
        QObject::connect(&updater, &CUpdater::needUpdate, &updater,
                         [add](bool need) { add(need ? "needUpdate true" : "needUpdate false"); });
        QObject::connect(&updater, &CUpdater::latestVersionChanged, &updater,
                         [add] { add("latestVersionChanged"); });
        QObject::connect(&updater, &CUpdater::changeLogChanged, &updater, [add] { add("changeLogChanged"); });
        QObject::connect(&updater, &CUpdater::localVersionChanged, &updater,
                         [add] { add("localVersionChanged"); });
        QObject::connect(&updater, &CUpdater::readyUpdateInfo, &updater,
                         [add](const QString& info) { add("info " + info); });
        QObject::connect(&updater, &CUpdater::readyUpdateError, &updater,
                         [add](const QString& error) { add("error " + error); });
        QObject::connect(&updater, &CUpdater::downloadStarted, &updater,
                         [add](const QString& path, qint64 total) {
                             add(QStringLiteral("started %1 %2").arg(QFileInfo(path).fileName()).arg(total));
                         });
        QObject::connect(&updater, &CUpdater::downloadFinished, &updater, [add](const QString& path) {
            add(QStringLiteral("finished %1").arg(QFileInfo(path).fileName()));
        });
        QObject::connect(&updater, &CUpdater::upgradeStart, &updater, [add] { add("upgradeStart"); });
        QObject::connect(&updater, &CUpdater::upgradeEnd, &updater, [add] { add("upgradeEnd"); });
    }

    QStringList take() { return std::exchange(m_events, {}); }
    const QStringList& all() const { return m_events; }

private:
    QStringList m_events;
};

//! The info lines of the updater, with ">" in place of their source location.
QStringList updateTrace(const MessageLog& log)
{
    const QRegularExpression place(R"(^updater/updater\.cpp \d+ )");
    QStringList lines;
    const QStringList infos = log.texts(QtInfoMsg);
    for (QString line : infos)
        lines.append(line.replace(place, QStringLiteral("> ")));
    return lines;
}

} // namespace

class TestUpdater : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void metaObjectSurface();
    void constructionTouchesNoFile();
    void versionComesFromTheConfigurationFile();
    void configurationFileWinsOverTheSettings();
    void configurationFileWithoutTheKeyGivesNoVersion();
    void settingsServeWithoutAConfigurationFile();
    void settingsServeBesideAnInvalidConfigurationFile();
    void withoutAnySourceTheVersionIsEmpty();
    void numericPartOfAVersionCounts_data();
    void numericPartOfAVersionCounts();

    void newReleaseIsTold();
    void newReleaseIsToldOnAGbkSystem();
    void checkPostsAnEmptyObject();
    void whatCountsAsNewer_data();
    void whatCountsAsNewer();
    void olderReleaseFillsTheFieldsInSilence();
    void lineBreaksBecomeMarks();
    void failedCheckIsNoUpdate_data();
    void failedCheckIsNoUpdate();
    void failedCheckLeavesTheFields();
    void redirectIsNotFollowed();
    void refusedCheckIsNoUpdate();
    void dataThatIsNoObjectEmptiesTheFields();
    void checkLeavesTheStateFile();
    void checkRunsAgainAfterAFailure();

    void downloadBringsThePackage();
    void unwritableStateDoesNotStopTheDownload();
    void downloadRecordsTheAttemptFirst();
    void downloadRecordsTheAttemptOnceMoreAtItsEnd();
    void stateIsWrittenBehindThePage();
    void partialPackageIsContinued();
    void letterCaseOfTheChecksumDoesNotMatter();
    void emptyPackageFileIsContinued_data();
    void emptyPackageFileIsContinued();
    void fullSizedPackageInStateOneIsFetchedAgain();
    void sizeBeyond32BitsReadsAsZeroAndNeverContinues();
    void packageOfAnotherReleaseIsRemovedFirst();
    void packageOfAnotherReleaseIsRemoved_data();
    void packageOfAnotherReleaseIsRemoved();
    void partialPackageWithoutAStateIsRemoved();
    void completePackageIsVerifiedWithoutATransfer();
    void checksumIsThatOfThePackage();
    void damagedCompletePackageIsFetchedAgain();
    void missingCompletePackageIsFetchedAgain();
    void fileNameIsTheLastSegmentDecoded_data();
    void fileNameIsTheLastSegmentDecoded();
    void packagesOfEarlierReleasesStay();
    void downloadWithoutACheckRemovesNothing();
    void secondDownloadIsRefused();
    void secondDownloadWithoutASizeSpoilsTheFirst();
    void wrongChecksumIsNotToldAndNotRetried();
    void failedTransferIsToldTwiceAndNotRetried();
    void serverThatIgnoresTheRangeIsCaughtByTheChecksum();
    void retriesOfTheCheckEnd();
    void retriesOfTheTransferEnd();
    void bothKindsOfRetryShareTheLimit();
    void downloadStartsTheRetriesAnew();
    void slotsWorkBeforeAnyDownload();

    void failedUnpackIsLoggedOnly();
    void progressMeasuresTime();
    void progressComesOnceASecond();
    void timerGoesOnAfterAFailure();
    void secondUpgradeStartsTheBarAnew();
    void everyUpgradeHasATimerOfItsOwn();
    void updaterMayGoWhileItUnpacks();

private:
    Release release(const QString& version = QStringLiteral("1.0.1")) const;
    void check(CUpdater& updater) const;
    void offer(const QByteArray& data);
    QJsonObject state() const;
    void writeState(int updateState, const QString& md5) const;
    QString updatePath(const QString& name = PackageName) const;
    QByteArray packageOnDisk(const QString& name = PackageName) const;
    void writePackage(const QByteArray& content, const QString& name = PackageName) const;
    //! Makes the package server stall after this number of bytes.
    void stallPackage(qint64 bytes = 0);
    QVector<LoggedRequest> transfers() const;

    TestSupport::StartedServices m_services;
    QTemporaryDir m_settingsDir;
    QByteArray m_package;
    std::unique_ptr<ApplicationFile> m_config;
    std::unique_ptr<ApplicationFile> m_state;
    std::unique_ptr<ApplicationFile> m_history;
    std::unique_ptr<MessageLog> m_log;
};

void TestUpdater::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("NelvoTests"));
    QCoreApplication::setApplicationName(QStringLiteral("test_updater"));
    QVERIFY(m_settingsDir.isValid());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settingsDir.path());
    for (int i = 0; i < 300000; ++i)
        m_package.append(static_cast<char>(i * 7 + i / 251));
}

void TestUpdater::init()
{
    m_services.reset();
    m_services.packages().add(PackageName, m_package);
    m_services.packages().setDelivery(PackageName, {});
    m_services.updates().setRelease(Product, release());
    m_config = std::make_unique<ApplicationFile>(QStringLiteral("updateConfig.json"));
    m_config->write(R"({"version": "1.0.0", "other": true})");
    m_state = std::make_unique<ApplicationFile>(QStringLiteral("NelvoUpdateState.dat"));
    m_history = std::make_unique<ApplicationFile>(QStringLiteral("NelvoUpdateLog.txt"));
    QDir(updatePath(QString())).removeRecursively();
    QSettings(QSettings::NativeFormat, QSettings::UserScope, QCoreApplication::organizationName(),
              QCoreApplication::applicationName())
        .clear();
    m_log = std::make_unique<MessageLog>();
}

void TestUpdater::cleanup()
{
    m_log.reset();
    m_history.reset();
    m_state.reset();
    m_config.reset();
    QDir(updatePath(QString())).removeRecursively();
}

Release TestUpdater::release(const QString& version) const
{
    return m_services.packageRelease(PackageName, version, QStringLiteral("first\nsecond"));
}

void TestUpdater::check(CUpdater& updater) const
{
    updater.checkVersion(m_services.updateUrl(), m_services.updates().token(), Product);
}

//! Sets the value of "data" in the reply to a check.
void TestUpdater::offer(const QByteArray& data)
{
    m_services.setReply("POST", CheckPath, json(R"({"code": 200, "data": )" + data + "}"));
}

QJsonObject TestUpdater::state() const
{
    return QJsonDocument::fromJson(m_state->content()).object();
}

void TestUpdater::writeState(int updateState, const QString& md5) const
{
    m_state->write(QJsonDocument(QJsonObject{{"updateState", updateState}, {"fullMd5", md5}}).toJson());
}

QString TestUpdater::updatePath(const QString& name) const
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/NelvoUpdate/") + name;
}

QByteArray TestUpdater::packageOnDisk(const QString& name) const
{
    return TestSupport::contentOf(updatePath(name));
}

void TestUpdater::writePackage(const QByteArray& content, const QString& name) const
{
    QDir().mkpath(updatePath(QString()));
    QFile file(updatePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write the package");
}

void TestUpdater::stallPackage(qint64 bytes)
{
    PackageDelivery stalled;
    stalled.end = PackageDelivery::End::Stall;
    stalled.endAfter = bytes;
    m_services.packages().setDelivery(PackageName, stalled);
}

QVector<LoggedRequest> TestUpdater::transfers() const
{
    QVector<LoggedRequest> found;
    const QVector<LoggedRequest> all = m_services.log().requests();
    std::copy_if(all.begin(), all.end(), std::back_inserter(found),
                 [](const LoggedRequest& request) { return request.method == "GET"; });
    return found;
}

void TestUpdater::metaObjectSurface()
{
    const QMetaObject& meta = CUpdater::staticMetaObject;
    QByteArrayList signatures;
    QByteArrayList names;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        signatures.append(method.methodSignature());
        names.append(method.parameterNames().join(','));
        QCOMPARE(method.typeName(), "void");
    }
    QCOMPARE(signatures,
             (QByteArrayList{
                 "needUpdate(bool)", "latestVersionChanged()", "changeLogChanged()", "localVersionChanged()",
                 "readyUpdateInfo(QString)", "readyUpdateError(QString)",
                 "downloadStarted(QString,qlonglong)", "downloadProgress(QString,qlonglong,qlonglong)",
                 "downloadFinished(QString)", "upgradeStart()", "upgradeProcess(float)", "upgradeEnd()",
                 "processDownloadFinished(QString)", "processDownloadError(QString,QString)", "doCover()",
                 "checkVersion(QString,QString,QString)", "download()", "upgrade()"}));
    QCOMPARE(names, (QByteArrayList{"need", "", "", "", "info", "error", "filePath,bytesTotal",
                                    "filePath,bytesReceived,bytesTotal", "filePath", "", "percent", "",
                                    "filePath", "filePath,errorString", "", "url,token,productId", "", ""}));

    QByteArrayList properties;
    for (int index = meta.propertyOffset(); index < meta.propertyCount(); ++index) {
        const QMetaProperty property = meta.property(index);
        QVERIFY(property.isReadable() && !property.isWritable());
        QCOMPARE(property.typeName(), "QString");
        properties.append(property.name() + QByteArray(" ") + property.notifySignal().name());
    }
    QCOMPARE(properties,
             (QByteArrayList{"localVersion localVersionChanged", "latestVersion latestVersionChanged",
                             "changeLog changeLogChanged"}));
}

void TestUpdater::constructionTouchesNoFile()
{
    const QDir dir(QCoreApplication::applicationDirPath());
    const QStringList before = dir.entryList();
    const CUpdater updater;
    QCOMPARE(dir.entryList(), before);
    QVERIFY(!updater.parent());
    QVERIFY(m_log->entries().isEmpty());
}

void TestUpdater::versionComesFromTheConfigurationFile()
{
    const CUpdater updater;
    QCOMPARE(updater.localVersion(), QStringLiteral("1.0.0"));
    QCOMPARE(updater.property("localVersion").toString(), QStringLiteral("1.0.0"));
    QCOMPARE(updater.latestVersion(), QString());
    QCOMPARE(updater.changeLog(), QString());
}

void TestUpdater::configurationFileWinsOverTheSettings()
{
    QSettings settings("NelvoTests", "test_updater");
    settings.setValue("version", "3.0");
    settings.sync();
    QCOMPARE(CUpdater().localVersion(), QStringLiteral("1.0.0"));
}

void TestUpdater::configurationFileWithoutTheKeyGivesNoVersion()
{
    QSettings settings("NelvoTests", "test_updater");
    settings.setValue("version", "3.0");
    settings.sync();
    m_config->write("{}");
    QCOMPARE(CUpdater().localVersion(), QString());
    QVERIFY(m_log->entries().isEmpty());
}

void TestUpdater::settingsServeWithoutAConfigurationFile()
{
    QSettings settings("NelvoTests", "test_updater");
    settings.setValue("version", "3.0");
    settings.sync();
    m_config->remove();
    QCOMPARE(CUpdater().localVersion(), QStringLiteral("3.0"));
    QCOMPARE(m_log->warnings(),
             QStringList{QStringLiteral("open file  %1 failed: %2")
                             .arg(m_config->path(), TestSupport::openError(m_config->path()))});
    QVERIFY(!m_config->exists());
}

void TestUpdater::settingsServeBesideAnInvalidConfigurationFile()
{
    QSettings settings("NelvoTests", "test_updater");
    settings.setValue("version", "3.0");
    settings.sync();
    m_config->write("{\"version\": ");
    QCOMPARE(CUpdater().localVersion(), QStringLiteral("3.0"));
    QCOMPARE(m_log->warnings().size(), 1);
    QVERIFY(m_log->warnings().constFirst().startsWith(QLatin1String("parse json failed: ")));
}

void TestUpdater::withoutAnySourceTheVersionIsEmpty()
{
    m_config->remove();
    CUpdater updater;
    QCOMPARE(updater.localVersion(), QString());
    Events events(updater);
    m_services.updates().setRelease(Product, release(QStringLiteral("0")));
    check(updater);
    QCOMPARE(events.take().constLast(), QStringLiteral("needUpdate true"));
}

void TestUpdater::numericPartOfAVersionCounts_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("read");
    row("suffix", "1.2.3-beta4", "1.2.3");
    row("text behind a point", "1.2.rc", "1.2");
    row("text", "beta", "");
    row("one segment", "7", "7");
}

void TestUpdater::numericPartOfAVersionCounts()
{
    QFETCH(const QString, version);
    m_config->write(QJsonDocument(QJsonObject{{"version", version}}).toJson());
    QTEST(CUpdater().localVersion(), "read");
}

void TestUpdater::newReleaseIsTold()
{
    // If the code page of the system is not GBK, the text is garbled.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const auto system = qScopeGuard([] { QTextCodec::setCodecForLocale(nullptr); });
    const QString found = QString::fromUtf8("\xB7\xA2\xCF\xD6\xD0\xC2\xB0\xE6\xB1\xBE ") + "1.0.1";
    CUpdater updater;
    Events events(updater);
    check(updater);
    QCOMPARE(events.take(),
             (QStringList{"info " + found, "latestVersionChanged", "changeLogChanged", "needUpdate true"}));
    QCOMPARE(updater.latestVersion(), QStringLiteral("1.0.1"));
    QCOMPARE(updater.changeLog(), QStringLiteral("first<br/>second"));
    QCOMPARE(updateTrace(*m_log), QStringList{"> " + found});
    QCOMPARE(m_log->entries().size(), 1);
}

void TestUpdater::newReleaseIsToldOnAGbkSystem()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("GBK"));
    const auto system = qScopeGuard([] { QTextCodec::setCodecForLocale(nullptr); });
    CUpdater updater;
    Events events(updater);
    check(updater);
    QCOMPARE(events.take().constFirst(), QStringLiteral("info 发现新版本 1.0.1"));
    QCOMPARE(updateTrace(*m_log), QStringList{QStringLiteral("> 发现新版本 1.0.1")});
}

void TestUpdater::checkPostsAnEmptyObject()
{
    CUpdater updater;
    updater.checkVersion(m_services.updateUrl(), QStringLiteral("token-1"), QStringLiteral("product-1"));
    const QVector<LoggedRequest> requests = m_services.log().requests();
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests[0].method, QByteArray("POST"));
    QCOMPARE(requests[0].target,
             QByteArray("/v1.0/service/sys/productVersion/findLatest?access_token=token-1&"
                        "productId=product-1&productVersion=0.0.0"));
    QCOMPARE(requests[0].body, QByteArray("{\n}\n"));
    QCOMPARE(requests[0].header("Content-type"), QByteArray("application/json"));
}

void TestUpdater::whatCountsAsNewer_data()
{
    QTest::addColumn<QString>("local");
    QTest::addColumn<QString>("offered");
    QTest::addColumn<bool>("newer");
    row("higher", "1.0.0", "1.0.1", true);
    row("higher by number, not by text", "1.9", "1.10", true);
    row("longer", "1.2", "1.2.0", true);
    row("shorter", "1.2.0", "1.2", false);
    row("equal", "1.0.1", "1.0.1", false);
    row("equal but for its suffix", "1.0.1", "1.0.1-beta", false);
    row("lower", "1.1", "1.0.9", false);
    row("no version", "1.0", "", false);
    row("neither has one", "", "", false);
}

void TestUpdater::whatCountsAsNewer()
{
    QFETCH(const QString, local);
    QFETCH(const QString, offered);
    QFETCH(const bool, newer);
    m_config->write(QJsonDocument(QJsonObject{{"version", local}}).toJson());
    m_services.updates().setRelease(Product, release(offered));
    CUpdater updater;
    Events events(updater);
    check(updater);
    if (newer)
        QCOMPARE(events.take().constLast(), QStringLiteral("needUpdate true"));
    else
        QCOMPARE(events.take(), QStringList{"needUpdate false"});
    QCOMPARE(updater.latestVersion(), offered);
}

void TestUpdater::olderReleaseFillsTheFieldsInSilence()
{
    m_services.updates().setRelease(Product, release(QStringLiteral("0.9")));
    CUpdater updater;
    Events events(updater);
    check(updater);
    QCOMPARE(events.take(), QStringList{"needUpdate false"});
    QVERIFY(m_log->entries().isEmpty());
    QCOMPARE(updater.latestVersion(), QStringLiteral("0.9"));
    QCOMPARE(updater.changeLog(), QStringLiteral("first<br/>second"));
}

void TestUpdater::lineBreaksBecomeMarks()
{
    offer(R"({"pVersion": "2", "remarks": "a\n\nb\r\nc\n"})");
    CUpdater updater;
    check(updater);
    QCOMPARE(updater.changeLog(), QStringLiteral("a<br/><br/>b\r<br/>c<br/>"));
}

void TestUpdater::failedCheckIsNoUpdate_data()
{
    const QByteArray data = R"("data": {"pVersion": "9.9"})";
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("HTTP error") << 500 << QByteArray("{\"code\": 200, " + data + "}");
    QTest::newRow("not found") << 404 << QByteArray();
    QTest::newRow("empty body") << 200 << QByteArray();
    QTest::newRow("no JSON") << 200 << QByteArray("<html>");
    QTest::newRow("array") << 200 << QByteArray("[]");
    QTest::newRow("empty object") << 200 << QByteArray("{}");
    QTest::newRow("no data") << 200 << QByteArray(R"({"code": 200})");
    QTest::newRow("no code") << 200 << QByteArray("{" + data + "}");
    QTest::newRow("another code") << 200 << QByteArray("{\"code\": 401, " + data + "}");
    QTest::newRow("code as text") << 200 << QByteArray("{\"code\": \"200\", " + data + "}");
    QTest::newRow("fractional code") << 200 << QByteArray("{\"code\": 200.5, " + data + "}");
}

void TestUpdater::failedCheckIsNoUpdate()
{
    QFETCH(const int, status);
    QFETCH(const QByteArray, body);
    m_services.setReply("POST", CheckPath, json(body, status));
    CUpdater updater;
    Events events(updater);
    check(updater);
    QCOMPARE(events.take(), QStringList{"needUpdate false"});
    QVERIFY(m_log->entries().isEmpty());
    QCOMPARE(updater.latestVersion(), QString());
}

void TestUpdater::failedCheckLeavesTheFields()
{
    CUpdater updater;
    check(updater);
    Events events(updater);
    updater.checkVersion(m_services.updateUrl(), QStringLiteral("wrong token"), Product);
    QCOMPARE(events.take(), QStringList{"needUpdate false"});
    updater.checkVersion(m_services.updateUrl(), m_services.updates().token(), QStringLiteral("unknown"));
    QCOMPARE(events.take(), QStringList{"needUpdate false"});
    QCOMPARE(updater.latestVersion(), QStringLiteral("1.0.1"));
    QCOMPARE(updater.changeLog(), QStringLiteral("first<br/>second"));
}

void TestUpdater::redirectIsNotFollowed()
{
    m_services.addFault({Fault::Redirect, CheckPath, {}, 0, false});
    CUpdater updater;
    Events events(updater);
    check(updater);
    QCOMPARE(events.take(), QStringList{"needUpdate false"});
    QCOMPARE(updater.latestVersion(), QString());
}

void TestUpdater::refusedCheckIsNoUpdate()
{
    m_services.addFault({Fault::Refuse, CheckPath, {}, 0, false});
    CUpdater updater;
    Events events(updater);
    check(updater);
    QCOMPARE(events.take(), QStringList{"needUpdate false"});
}

void TestUpdater::dataThatIsNoObjectEmptiesTheFields()
{
    CUpdater updater;
    check(updater);
    Events events(updater);
    offer("[1]");
    check(updater);
    QCOMPARE(events.take(), QStringList{"needUpdate false"});
    QCOMPARE(updater.latestVersion(), QString());
    QCOMPARE(updater.changeLog(), QString());
}

void TestUpdater::checkLeavesTheStateFile()
{
    CUpdater updater;
    check(updater);
    QVERIFY(!m_state->exists());
    writeState(1, "abc");
    const QByteArray before = m_state->content();
    check(updater);
    QCOMPARE(m_state->content(), before);
}

void TestUpdater::checkRunsAgainAfterAFailure()
{
    CUpdater updater;
    updater.checkVersion(QStringLiteral("http://127.0.0.1:1"), m_services.updates().token(), Product);
    Events events(updater);
    check(updater);
    QCOMPARE(events.take().constLast(), QStringLiteral("needUpdate true"));
}

void TestUpdater::downloadBringsThePackage()
{
    CUpdater updater;
    check(updater);
    m_log->clear();
    Events events(updater);
    const QSignalSpy progress(&updater, &CUpdater::downloadProgress);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(events.take(), (QStringList{"started NelvoEditor.zip 300000", "finished NelvoEditor.zip"}));
    QCOMPARE(finished[0][0].toString(), updatePath());
    QCOMPARE(packageOnDisk(), m_package);
    QVERIFY(!progress.isEmpty());
    QCOMPARE(progress.last(), (QVariantList{updatePath(), 300000, 300000}));
    QCOMPARE(state(), (QJsonObject{{"updateState", 2},
                                   {"fullMd5", md5(m_package)},
                                   {"remarks", "first<br/>second"},
                                   {"pVersion", "1.0.1"}}));
    QCOMPARE(updateTrace(*m_log), (QStringList{"> 下载完成，校验MD5", "> 校验通过"}));
    QCOMPARE(m_log->warnings(), QStringList{"request finished with code 206"});
}

void TestUpdater::unwritableStateDoesNotStopTheDownload()
{
    QVERIFY(QDir().mkdir(m_state->path()));
    const auto removed = qScopeGuard([this] { QDir().rmdir(m_state->path()); });
    CUpdater updater;
    check(updater);
    m_log->clear();
    Events events(updater);
    updater.download();
    QTRY_COMPARE(events.all(), (QStringList{"started NelvoEditor.zip 300000", "finished NelvoEditor.zip"}));
    QCOMPARE(packageOnDisk(), m_package);
    QCOMPARE(m_log->warnings(), QStringList{"request finished with code 206"});
}

void TestUpdater::downloadRecordsTheAttemptFirst()
{
    CUpdater updater;
    check(updater);
    QByteArray atTheStart;
    connect(&updater, &CUpdater::downloadStarted, &updater, [&] { atTheStart = m_state->content(); });
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    const QJsonObject attempt{{"updateState", 1},
                              {"fullMd5", md5(m_package)},
                              {"remarks", "first<br/>second"},
                              {"pVersion", "1.0.1"}};
    QCOMPARE(atTheStart, QJsonDocument(attempt).toJson());
    QCOMPARE(m_state->content(), QJsonDocument(attempt).toJson());
    QTRY_COMPARE(finished.count(), 1);
}

void TestUpdater::downloadRecordsTheAttemptOnceMoreAtItsEnd()
{
    CUpdater updater;
    check(updater);
    QByteArray atTheStart;
    connect(&updater, &CUpdater::downloadStarted, &updater, [&] {
        atTheStart = m_state->content();
        m_state->write("changed meanwhile");
    });
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QVERIFY(!atTheStart.isEmpty());
    QCOMPARE(m_state->content(), atTheStart);
    QTRY_COMPARE(finished.count(), 1);
}

void TestUpdater::stateIsWrittenBehindThePage()
{
    CUpdater updater;
    check(updater);
    int atTheEnd = -1;
    connect(&updater, &CUpdater::downloadFinished, &updater,
            [&] { atTheEnd = state().value("updateState").toInt(); });
    updater.download();
    QTRY_COMPARE(atTheEnd, 1);
    QTRY_COMPARE(state().value("updateState").toInt(), 2);
}

void TestUpdater::partialPackageIsContinued()
{
    writeState(1, md5(m_package));
    writePackage(m_package.left(100000));
    CUpdater updater;
    check(updater);
    const QSignalSpy progress(&updater, &CUpdater::downloadProgress);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(packageOnDisk(), m_package);
    QCOMPARE(transfers().size(), 1);
    QCOMPARE(transfers()[0].header("Range"), QByteArray("bytes=100000-"));
    QVERIFY(progress.first()[1].toLongLong() > 100000);
}

void TestUpdater::letterCaseOfTheChecksumDoesNotMatter()
{
    Release upper = release();
    upper.md5 = upper.md5.toUpper();
    m_services.updates().setRelease(Product, upper);
    writeState(1, md5(m_package));
    writePackage(m_package.left(100000));
    CUpdater updater;
    check(updater);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(transfers()[0].header("Range"), QByteArray("bytes=100000-"));
    QCOMPARE(state().value("fullMd5").toString(), upper.md5);
    // The other way round, with a complete package.
    m_services.updates().setRelease(Product, release());
    check(updater);
    writeState(2, md5(m_package).toUpper());
    updater.download();
    QCOMPARE(finished.count(), 2);
    QCOMPARE(transfers().size(), 1);
}

void TestUpdater::emptyPackageFileIsContinued_data()
{
    QTest::addColumn<qint64>("size");
    QTest::newRow("of a known size") << qint64(m_package.size());
    QTest::newRow("of an unknown size") << qint64(0);
}

void TestUpdater::emptyPackageFileIsContinued()
{
    QFETCH(const qint64, size);
    Release offered = release();
    offered.size = size;
    m_services.updates().setRelease(Product, offered);
    writeState(1, md5(m_package));
    writePackage({});
    CUpdater updater;
    check(updater);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QVERIFY(QFile::exists(updatePath()));
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(transfers()[0].header("Range"), QByteArray("bytes=0-"));
}

void TestUpdater::fullSizedPackageInStateOneIsFetchedAgain()
{
    writeState(1, md5(m_package));
    writePackage(m_package); // correct, but the updater does not check it
    CUpdater updater;
    check(updater);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QVERIFY(!QFile::exists(updatePath()));
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(transfers().size(), 1);
    QCOMPARE(transfers()[0].header("Range"), QByteArray("bytes=0-"));
    QCOMPARE(packageOnDisk(), m_package);
}

void TestUpdater::sizeBeyond32BitsReadsAsZeroAndNeverContinues()
{
    Release large = release();
    large.size = Q_INT64_C(1) << 31;
    m_services.updates().setRelease(Product, large);
    writeState(1, md5(m_package));
    writePackage(m_package.left(100000));
    CUpdater updater;
    check(updater);
    Events events(updater);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QCOMPARE(events.all(), QStringList{"started NelvoEditor.zip 0"});
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(transfers()[0].header("Range"), QByteArray("bytes=0-"));
}

//! After a crash in between, the old package must not count as a part of the new one.
void TestUpdater::packageOfAnotherReleaseIsRemovedFirst()
{
    stallPackage();
    writePackage("an earlier package");
    CUpdater updater;
    check(updater);
    // A pipe blocks the download when it reads the state file, and again when it writes the file.
    if (!makeFifo(m_state->path()))
        QSKIP("stops the download at a named pipe in its directory; Windows keeps named pipes elsewhere");
    QFile pipe(m_state->path());
    bool removed = false;
    std::thread otherEnd([this, &pipe, &removed] {
        writeState(1, md5("an earlier package"));
        for (const QDeadlineTimer end(10000); !removed && !end.hasExpired(); QThread::msleep(1))
            removed = !QFile::exists(updatePath());
        pipe.open(QIODevice::ReadWrite);
    });
    updater.download();
    otherEnd.join();
    QVERIFY(removed);
}

void TestUpdater::packageOfAnotherReleaseIsRemoved_data()
{
    QTest::addColumn<int>("updateState");
    QTest::newRow("whose download was interrupted") << 1;
    QTest::newRow("that was complete") << 2;
}

void TestUpdater::packageOfAnotherReleaseIsRemoved()
{
    QFETCH(const int, updateState);
    writeState(updateState, md5("an earlier package"));
    writePackage("an earlier package");
    CUpdater updater;
    check(updater);
    m_log->clear();
    Events events(updater);
    updater.download();
    QVERIFY(!QFile::exists(updatePath()));
    QCOMPARE(state().value("updateState").toInt(), 1);
    QTRY_COMPARE(events.all(), (QStringList{"started NelvoEditor.zip 300000", "finished NelvoEditor.zip"}));
    QCOMPARE(updateTrace(*m_log), (QStringList{"> 下载完成，校验MD5", "> 校验通过"}));
    QCOMPARE(transfers()[0].header("Range"), QByteArray("bytes=0-"));
    QCOMPARE(packageOnDisk(), m_package);
}

void TestUpdater::partialPackageWithoutAStateIsRemoved()
{
    writePackage(m_package.left(100000));
    CUpdater updater;
    check(updater);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(transfers()[0].header("Range"), QByteArray("bytes=0-"));
    // The same with a state file that an earlier update to this release has left.
    writeState(0, md5(m_package));
    updater.download();
    QVERIFY(!QFile::exists(updatePath()));
    QTRY_COMPARE(finished.count(), 2);
}

void TestUpdater::completePackageIsVerifiedWithoutATransfer()
{
    writeState(2, md5(m_package));
    writePackage(m_package);
    CUpdater updater;
    check(updater);
    m_log->clear();
    Events events(updater);
    updater.download();
    QCOMPARE(events.take(), QStringList{"finished NelvoEditor.zip"});
    QVERIFY(transfers().isEmpty());
    QCOMPARE(state(), (QJsonObject{{"updateState", 2}, {"fullMd5", md5(m_package)}}));
    QCOMPARE(updateTrace(*m_log), (QStringList{"> 下载完成，校验MD5", "> 校验通过"}));
}

//! The checksum is that of the package, even if the slot receives another path.
void TestUpdater::checksumIsThatOfThePackage()
{
    writeState(2, md5(m_package));
    writePackage(m_package);
    CUpdater updater;
    check(updater);
    updater.download();
    m_log->clear();
    Events events(updater);
    QMetaObject::invokeMethod(&updater, "processDownloadFinished",
                              Q_ARG(QString, updatePath(QStringLiteral("other.zip"))));
    QCOMPARE(updateTrace(*m_log), (QStringList{"> 下载完成，校验MD5", "> 校验通过"}));
    QCOMPARE(events.take(), QStringList{"finished other.zip"});
}

void TestUpdater::damagedCompletePackageIsFetchedAgain()
{
    writeState(2, md5(m_package));
    writePackage("damaged" + m_package.mid(7));
    CUpdater updater;
    check(updater);
    m_log->clear();
    Events events(updater);
    updater.download();
    // The attempt is not recorded in this case.
    QCOMPARE(state(), (QJsonObject{{"updateState", 2}, {"fullMd5", md5(m_package)}}));
    // No other transfer is running, so this retry starts one.
    QTRY_COMPARE(events.all(), (QStringList{"started NelvoEditor.zip 300000", "finished NelvoEditor.zip"}));
    QCOMPARE(transfers().size(), 1);
    QCOMPARE(transfers()[0].header("Range"), QByteArray("bytes=0-"));
    QCOMPARE(packageOnDisk(), m_package);
    QCOMPARE(updateTrace(*m_log), (QStringList{"> 下载完成，校验MD5", "> 校验失败", "> 重试",
                                               "> 下载完成，校验MD5", "> 校验通过"}));
}

void TestUpdater::missingCompletePackageIsFetchedAgain()
{
    writeState(2, md5(m_package));
    CUpdater updater;
    check(updater);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QVERIFY(m_log->warnings().constFirst().contains(QLatin1String("open failed")));
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(packageOnDisk(), m_package);
}

void TestUpdater::fileNameIsTheLastSegmentDecoded_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("fileName");
    row("plain", "/files/a/Nelvo.zip", "Nelvo.zip");
    row("query", "/files/Nelvo.zip?file=other.zip&x=/y", "Nelvo.zip");
    row("fragment", "/files/Nelvo.zip#part", "Nelvo.zip");
    row("encoded", "/files/%E5%8C%85%20%231.zip", "包 #1.zip");
    row("encoded once, and not twice", "/files/100%25%2541.zip", "100%%41.zip");
    const bool isSeparator = QDir::toNativeSeparators(QStringLiteral("/")) == QStringLiteral("\\");
    row("backslashes", "/files/..%5C..%5CNelvoEditor.exe",
        isSeparator ? "NelvoEditor.exe" : "..\\..\\NelvoEditor.exe");
    row("Chinese", "/files/包.zip", "包.zip");
}

void TestUpdater::fileNameIsTheLastSegmentDecoded()
{
    QFETCH(const QString, path);
    QFETCH(const QString, fileName);
    offer(
        QJsonDocument(QJsonObject{{"pVersion", "2"}, {"fullPath", m_services.packageUrl() + path}}).toJson());
    CUpdater updater;
    check(updater);
    const QSignalSpy started(&updater, &CUpdater::downloadStarted);
    updater.download();
    QCOMPARE(started.count(), 1);
    QCOMPARE(started[0][0].toString(), updatePath(fileName));
}

void TestUpdater::packagesOfEarlierReleasesStay()
{
    writePackage("earlier", QStringLiteral("earlier.zip"));
    CUpdater updater;
    check(updater);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(packageOnDisk(QStringLiteral("earlier.zip")), QByteArray("earlier"));
}

void TestUpdater::downloadWithoutACheckRemovesNothing()
{
    writePackage("earlier", QStringLiteral("earlier.zip"));
    CUpdater updater;
    Events events(updater);
    updater.download();
    QTRY_VERIFY(events.all().join(' ').contains(QStringLiteral("下载失败")));
    QCOMPARE(packageOnDisk(QStringLiteral("earlier.zip")), QByteArray("earlier"));
}

void TestUpdater::secondDownloadIsRefused()
{
    stallPackage(1000);
    CUpdater updater;
    check(updater);
    Events events(updater);
    updater.download();
    QTRY_COMPARE(packageOnDisk().size(), 1000);
    m_log->clear();
    events.take();
    updater.download();
    const QString refusal = QStringLiteral("download already exist: ") + updatePath();
    QCOMPARE(events.take(), QStringList{"info " + refusal});
    QCOMPARE(updateTrace(*m_log), QStringList{"> " + refusal});
    QCOMPARE(state().value("updateState").toInt(), 1);
    // The first download continues.
    m_services.packages().setDelivery(PackageName, {});
    QTRY_COMPARE(events.all(), QStringList{"finished NelvoEditor.zip"});
    QCOMPARE(packageOnDisk(), m_package);
}

//! Without a size, no package counts as partial. So the received bytes are removed before the second download
//! is refused.
void TestUpdater::secondDownloadWithoutASizeSpoilsTheFirst()
{
    Release sizeless = release();
    sizeless.size = 0;
    m_services.updates().setRelease(Product, sizeless);
    stallPackage(1000);
    CUpdater updater;
    check(updater);
    m_log->clear();
    updater.download();
    QTRY_COMPARE(packageOnDisk().size(), 1000);
    updater.download();
    QVERIFY(!QFile::exists(updatePath()));
    m_services.packages().setDelivery(PackageName, {});
    QTRY_COMPARE(updateTrace(*m_log), (QStringList{"> download already exist: " + updatePath(),
                                                   "> 下载完成，校验MD5", "> 校验失败", "> 重试"}));
    QVERIFY(!QFile::exists(updatePath()));
}

void TestUpdater::wrongChecksumIsNotToldAndNotRetried()
{
    Release wrong = release();
    wrong.md5 = md5("something else");
    m_services.updates().setRelease(Product, wrong);
    CUpdater updater;
    check(updater);
    m_log->clear();
    Events events(updater);
    updater.download();
    QTRY_COMPARE(updateTrace(*m_log), (QStringList{"> 下载完成，校验MD5", "> 校验失败", "> 重试"}));
    // The number of transfers after a later download shows that the retry has started none.
    QVERIFY(!QFile::exists(updatePath()));
    QCOMPARE(events.take(), QStringList{"started NelvoEditor.zip 300000"});
    QCOMPARE(state().value("updateState").toInt(), 1);
    m_services.updates().setRelease(Product, release());
    check(updater);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(transfers().size(), 2);
}

void TestUpdater::failedTransferIsToldTwiceAndNotRetried()
{
    Release missing = release();
    missing.path = m_services.packageUrl() + QStringLiteral("/missing.zip");
    m_services.updates().setRelease(Product, missing);
    CUpdater updater;
    check(updater);
    m_log->clear();
    Events events(updater);
    updater.download();
    QTRY_COMPARE(updateTrace(*m_log).size(), 4);
    const QString failed = updateTrace(*m_log).constFirst();
    QVERIFY2(failed.startsWith(QStringLiteral("> 下载失败Error transferring http://")), qPrintable(failed));
    QCOMPARE(updateTrace(*m_log), (QStringList{failed, "> 重试", failed, "> 重试"}));
    const QString told = "info " + failed.mid(2);
    QCOMPARE(events.take(), (QStringList{"started missing.zip 300000", told, told}));
    QCOMPARE(state().value("updateState").toInt(), 1);
    m_services.updates().setRelease(Product, release());
    check(updater);
    const QSignalSpy finished(&updater, &CUpdater::downloadFinished);
    updater.download();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(transfers().size(), 2);
}

void TestUpdater::serverThatIgnoresTheRangeIsCaughtByTheChecksum()
{
    PackageDelivery whole;
    whole.ignoresRange = true;
    m_services.packages().setDelivery(PackageName, whole);
    writeState(1, md5(m_package));
    writePackage(m_package.left(100000));
    CUpdater updater;
    check(updater);
    m_log->clear();
    Events events(updater);
    const QSignalSpy progress(&updater, &CUpdater::downloadProgress);
    updater.download();
    QTRY_COMPARE(updateTrace(*m_log), (QStringList{"> 下载完成，校验MD5", "> 校验失败", "> 重试"}));
    QCOMPARE(progress.last(), (QVariantList{updatePath(), 400000, 300000}));
    QCOMPARE(events.take(), QStringList{"started NelvoEditor.zip 300000"});
    QVERIFY(!QFile::exists(updatePath()));
}

void TestUpdater::retriesOfTheCheckEnd()
{
    stallPackage();
    CUpdater updater;
    check(updater);
    updater.download();
    m_log->clear();
    const auto finish = [&] {
        writePackage("damaged");
        QMetaObject::invokeMethod(&updater, "processDownloadFinished", Q_ARG(QString, updatePath()));
    };
    const QStringList retried{"> 下载完成，校验MD5", "> 校验失败", "> 重试"};
    for (int i = 0; i < 3; ++i) {
        finish();
        QVERIFY(!QFile::exists(updatePath()));
    }
    QCOMPARE(updateTrace(*m_log), retried + retried + retried);
    m_log->clear();
    finish();
    QCOMPARE(updateTrace(*m_log), (QStringList{"> 下载完成，校验MD5", "> 校验失败"}));
    QCOMPARE(packageOnDisk(), QByteArray("damaged"));
    QCOMPARE(state().value("updateState").toInt(), 1);
}

void TestUpdater::retriesOfTheTransferEnd()
{
    stallPackage();
    CUpdater updater;
    check(updater);
    updater.download();
    m_log->clear();
    Events events(updater);
    const auto fail = [&] {
        writePackage("partial");
        QMetaObject::invokeMethod(&updater, "processDownloadError", Q_ARG(QString, updatePath()),
                                  Q_ARG(QString, QStringLiteral("reason")));
    };
    for (int i = 0; i < 3; ++i) {
        fail();
        QVERIFY(!QFile::exists(updatePath()));
        QCOMPARE(state().value("updateState").toInt(), 1);
    }
    fail();
    QCOMPARE(packageOnDisk(), QByteArray("partial"));
    QCOMPARE(state(), (QJsonObject{{"updateState", 0},
                                   {"fullMd5", md5(m_package)},
                                   {"remarks", "first<br/>second"},
                                   {"pVersion", "1.0.1"}}));
    QCOMPARE(updateTrace(*m_log), (QStringList{"> 下载失败reason", "> 重试", "> 下载失败reason", "> 重试",
                                               "> 下载失败reason", "> 重试", "> 下载失败reason"}));
    QCOMPARE(events.take(), (QStringList{"info 下载失败reason", "info 下载失败reason", "info 下载失败reason",
                                         "info 下载失败reason"}));
}

void TestUpdater::bothKindsOfRetryShareTheLimit()
{
    stallPackage();
    CUpdater updater;
    check(updater);
    updater.download();
    const auto fail = [&] {
        QMetaObject::invokeMethod(&updater, "processDownloadError", Q_ARG(QString, updatePath()),
                                  Q_ARG(QString, QString()));
    };
    fail();
    QMetaObject::invokeMethod(&updater, "processDownloadFinished", Q_ARG(QString, updatePath()));
    fail();
    QCOMPARE(updateTrace(*m_log).count("> 重试"), 3);
    QCOMPARE(state().value("updateState").toInt(), 1);
    fail();
    QCOMPARE(updateTrace(*m_log).count("> 重试"), 3);
    QCOMPARE(state().value("updateState").toInt(), 0);
}

void TestUpdater::downloadStartsTheRetriesAnew()
{
    stallPackage();
    CUpdater updater;
    check(updater);
    updater.download();
    const auto finish = [&] {
        QMetaObject::invokeMethod(&updater, "processDownloadFinished", Q_ARG(QString, updatePath()));
    };
    for (int i = 0; i < 4; ++i)
        finish();
    QCOMPARE(updateTrace(*m_log).count("> 重试"), 3);
    updater.download(); // is refused, but restarts the count of retries
    finish();
    QCOMPARE(updateTrace(*m_log).count("> 重试"), 4);
}

//! Both slots can be called by name before any download.
void TestUpdater::slotsWorkBeforeAnyDownload()
{
    {
        CUpdater finished;
        QMetaObject::invokeMethod(&finished, "processDownloadFinished", Q_ARG(QString, QString()));
        QCOMPARE(updateTrace(*m_log).mid(0, 3),
                 (QStringList{QStringLiteral("> 下载完成，校验MD5"), QStringLiteral("> 校验失败"),
                              QStringLiteral("> 重试")}));
    }
    m_log->clear();
    CUpdater failed;
    Events events(failed);
    QMetaObject::invokeMethod(&failed, "processDownloadError", Q_ARG(QString, QString()),
                              Q_ARG(QString, QStringLiteral("reason")));
    QCOMPARE(updateTrace(*m_log).mid(0, 2),
             (QStringList{QStringLiteral("> 下载失败reason"), QStringLiteral("> 重试")}));
    // The retry has no address, so its transfer fails. This failure is reported twice.
    QTRY_COMPARE(updateTrace(*m_log).filter(QStringLiteral("下载失败")).size(), 1 + 2);
}

void TestUpdater::failedUnpackIsLoggedOnly()
{
    const QString directory = QCoreApplication::applicationDirPath() + "/NelvoUnCompress";
    QVERIFY(QDir().mkpath(directory + "/left"));
    writeState(2, "abc");
    const QByteArray before = m_state->content();
    CUpdater updater;
    Events events(updater);
    // Nothing was downloaded in this process, so there is no package.
    updater.upgrade();
    QCOMPARE(events.take(), QStringList{"upgradeStart"});
    QTRY_COMPARE(updateTrace(*m_log), (QStringList{"> 解压中", "> 解压失败"}));
    QVERIFY(!QFile::exists(directory));
    QCOMPARE(events.take(), QStringList{});
    QCOMPARE(m_state->content(), before);
    QCOMPARE(m_config->content(), QByteArray(R"({"version": "1.0.0", "other": true})"));
    QVERIFY(!m_history->exists());
}

void TestUpdater::progressMeasuresTime()
{
    CUpdater updater;
    const QSignalSpy progress(&updater, &CUpdater::upgradeProcess);
    const auto tick = [&updater] {
        QTimerEvent event(12345); // any timer
        QCoreApplication::sendEvent(&updater, &event);
    };
    float expected = 0;
    for (int i = 1; i <= 18; ++i) {
        tick();
        expected = static_cast<float>(expected + 0.05);
        QCOMPARE(progress.count(), i);
        QCOMPARE(progress.last()[0].toFloat(), expected);
    }
    QVERIFY(progress.last()[0].toFloat() >= 0.9F);
    QVERIFY(progress.last()[0].toFloat() < 0.91F);
    for (int i = 0; i < 3; ++i)
        tick();
    QCOMPARE(progress.count(), 18);
}

void TestUpdater::progressComesOnceASecond()
{
    CUpdater updater;
    const QSignalSpy progress(&updater, &CUpdater::upgradeProcess);
    QElapsedTimer sinceTheStart;
    sinceTheStart.start();
    updater.upgrade();
    QTRY_COMPARE_WITH_TIMEOUT(progress.count(), 2, 15000);
    // A coarse timer may fire 5 % early.
    QVERIFY2(sinceTheStart.elapsed() >= 1800, qPrintable(QString::number(sinceTheStart.elapsed())));
}

void TestUpdater::timerGoesOnAfterAFailure()
{
    CUpdater updater;
    QSignalSpy progress(&updater, &CUpdater::upgradeProcess);
    updater.upgrade();
    QTRY_VERIFY(updateTrace(*m_log).contains("> 解压失败"));
    progress.clear();
    QVERIFY(progress.wait(20000));
    QVERIFY(progress.first()[0].toFloat() >= 0.05F);
}

void TestUpdater::secondUpgradeStartsTheBarAnew()
{
    CUpdater updater;
    const QSignalSpy progress(&updater, &CUpdater::upgradeProcess);
    QTimerEvent event(1);
    for (int i = 0; i < 18; ++i)
        QCoreApplication::sendEvent(&updater, &event);
    updater.upgrade();
    QCoreApplication::sendEvent(&updater, &event);
    QCOMPARE(progress.last()[0].toFloat(), 0.05F);
    QTRY_VERIFY(updateTrace(*m_log).contains("> 解压失败"));
}

//! A second upgrade also starts a timer after a failure, when the first timer still runs.
void TestUpdater::everyUpgradeHasATimerOfItsOwn()
{
    CUpdater updater;
    for (int upgrades = 1; upgrades <= 2; ++upgrades) {
        updater.upgrade();
        QTRY_COMPARE(updateTrace(*m_log).count("> 解压失败"), upgrades);
        const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&updater);
        QCOMPARE(timers.size(), upgrades);
        for (const QAbstractEventDispatcher::TimerInfo& timer : timers) {
            QCOMPARE(timer.interval, 1000);
            QCOMPARE(timer.timerType, Qt::CoarseTimer);
        }
    }
}

void TestUpdater::updaterMayGoWhileItUnpacks()
{
    std::make_unique<CUpdater>()->upgrade();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(updateTrace(*m_log), QStringList{"> 解压中"});
}

QTEST_GUILESS_MAIN(TestUpdater)
#include "test_updater.moc"
