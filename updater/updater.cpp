#include "updater/updater.h"

#include "tasks/threadpool.h"
#include "updater/sourcefile.h"
#include "updater/unzippackage.h"
#include "updater/updatehelper.h"
#include "updater/updatekeys.h"
#include "updater/updatestatefile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QProcess>
#include <QSettings>
#include <QTimer>
#include <QUrl>

namespace {

constexpr int CheckTimeoutMs = 30000;
constexpr quint32 MaxRetries = 3;
constexpr int TickMs = 1000;
constexpr int CoverDelayMs = 2000;

//! "发现新版本 " in GBK, the code page of the target systems.
constexpr auto NewVersionText = "\xB7\xA2\xCF\xD6\xD0\xC2\xB0\xE6\xB1\xBE ";

//! The line breaks are LF CR. This is intentional.
const auto LogEntry = QStringLiteral("\n\r版本:%1\n\r更新时间:%2\n\r更新说明:\n\r");

QString appDir()
{
    return QFileInfo(QCoreApplication::applicationFilePath()).absolutePath();
}

QString configFilePath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/updateConfig.json");
}

//! The user's settings of the host.
class HostSettings final : public QSettings
{
public:
    HostSettings()
        : QSettings(QSettings::NativeFormat, QSettings::UserScope, QCoreApplication::organizationName(),
                    QCoreApplication::applicationName())
    {}
};

//! The name of a package's file: the address after its last separator. On Windows a backslash is a separator
//! too, and the file must not leave the update directory.
QString packageName(const QString& address)
{
    const QString segment = QDir::fromNativeSeparators(QUrl(address).fileName(QUrl::FullyDecoded));
    return segment.mid(segment.lastIndexOf(QLatin1Char('/')) + 1);
}

bool startBatchFile(const QString& path)
{
    // The path is the whole command, unquoted. A path with a space is split and starts nothing.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return QProcess::startDetached(path);
    QT_WARNING_POP
}

} // namespace

CUpdater::CUpdater(QObject* parent)
    : QObject(parent)
    , m_updateDir(appDir() + QStringLiteral("/NelvoUpdate"))
    , m_unCompressDir(appDir() + QStringLiteral("/NelvoUnCompress"))
    , m_logFilePath(appDir() + QStringLiteral("/NelvoUpdateLog.txt"))
    , m_stateFilePath(appDir() + QStringLiteral("/NelvoUpdateState.dat"))
{
    readLocalVersion();
}

CUpdater::~CUpdater() = default;

QString CUpdater::localVersion() const
{
    return m_localVersion.toString();
}

QString CUpdater::latestVersion() const
{
    return m_latestVersion;
}

QString CUpdater::changeLog() const
{
    return m_changeLog;
}

void CUpdater::readLocalVersion()
{
    QString version;
    QJsonObject config;
    if (readJsonObject(configFilePath(), config)) {
        version = config.value(UpdateKeys::Version).toString();
    } else {
        const HostSettings settings;
        if (!settings.contains(UpdateKeys::Version))
            return;
        version = settings.value(UpdateKeys::Version).toString();
    }
    m_localVersion = QVersionNumber::fromString(version);
    Q_EMIT localVersionChanged();
}

bool CUpdater::saveLocalVersion() const
{
    QJsonObject config;
    if (!readJsonObject(configFilePath(), config))
        return false;
    config.insert(UpdateKeys::Version, localVersion());
    return writeFileBytes(configFilePath(), QJsonDocument(config).toJson());
}

void CUpdater::appendUpdateLog()
{
    QFile file(m_logFilePath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    const QString date = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd_hh-mm-ss"));
    file.write(LogEntry.arg(m_latestVersion, date).toUtf8());
    file.write(m_changeLog.toUtf8());
}

void CUpdater::reportInfo(const QString& text, const char* file, int line)
{
    qInfo().noquote() << file << line << text;
    Q_EMIT readyUpdateInfo(text);
}

void CUpdater::checkVersion(QString url, QString token, QString productId)
{
    const QPointer<CUpdater> self(this);
    m_webServer.setServerAddress(url);
    QJsonObject reply;
    const bool answered =
        m_webServer.findLatest(token, productId, QStringLiteral("0.0.0"), {}, reply, CheckTimeoutMs);
    if (!self)
        return;
    if (!answered) {
        Q_EMIT needUpdate(false);
        return;
    }

    const QJsonObject release = reply.value(UpdateKeys::Data).toObject();
    m_latestVersion = release.value(UpdateKeys::PackageVersion).toString();
    m_changeLog = release.value(UpdateKeys::Remarks).toString();
    m_changeLog.replace(QLatin1Char('\n'), QStringLiteral("<br/>"));
    m_fullMd5 = release.value(UpdateKeys::FullMd5).toString();
    m_fullSize = release.value(UpdateKeys::FullSize).toInt(0);
    m_fullPath = release.value(UpdateKeys::FullPath).toString();

    if (QVersionNumber::compare(QVersionNumber::fromString(m_latestVersion), m_localVersion) <= 0) {
        Q_EMIT needUpdate(false);
        return;
    }
    reportInfo(QString::fromLocal8Bit(NewVersionText) + m_latestVersion, NELVO_SOURCE_FILE, __LINE__);
    if (self)
        Q_EMIT latestVersionChanged();
    if (self)
        Q_EMIT changeLogChanged();
    if (self)
        Q_EMIT needUpdate(true);
}

CDownloader& CUpdater::downloader()
{
    if (m_downloader)
        return *m_downloader;
    m_downloadManager.reset(new QNetworkAccessManager);
    m_downloader.emplace(m_downloadManager.data());
    connect(&*m_downloader, &CDownloader::downloadError, this, &CUpdater::processDownloadError);
    connect(&*m_downloader, &CDownloader::downloadFinished, this, &CUpdater::processDownloadFinished);
    connect(&*m_downloader, &CDownloader::downloadStarted, this, &CUpdater::downloadStarted);
    connect(&*m_downloader, &CDownloader::downloadProgress, this, &CUpdater::downloadProgress);
    return *m_downloader;
}

void CUpdater::download()
{
    UpdateStateFile stateFile(m_stateFilePath);
    m_retryCount = 0;
    m_packagePath = m_updateDir + QLatin1Char('/') + packageName(m_fullPath);

    const bool sameRelease =
        stateFile.json.value(UpdateKeys::FullMd5).toString().toLower() == m_fullMd5.toLower();
    if (sameRelease && stateFile.state() == UpdateState::Downloaded) {
        Q_EMIT downloader().downloadFinished(m_packagePath);
        return;
    }
    prepareTarget(sameRelease && stateFile.state() == UpdateState::Downloading);

    stateFile.setState(UpdateState::Downloading);
    stateFile.json.insert(UpdateKeys::FullMd5, m_fullMd5);
    stateFile.json.insert(UpdateKeys::Remarks, m_changeLog);
    stateFile.json.insert(UpdateKeys::PackageVersion, m_latestVersion);
    stateFile.write();

    QString errorString;
    const QPointer<CUpdater> self(this);
    if (!startTransfer(errorString) && self)
        reportInfo(errorString, NELVO_SOURCE_FILE, __LINE__);
}

void CUpdater::prepareTarget(bool continued) const
{
    // A file of the full size whose download did not succeed may be wrong.
    const qint64 size = QFileInfo(m_packagePath).size();
    const bool partial = size == 0 || size < m_fullSize;
    if (!continued || !partial)
        QFile::remove(m_packagePath);
}

bool CUpdater::startTransfer(QString& errorString)
{
    return downloader().download(m_fullPath, m_packagePath, m_fullSize, errorString, true);
}

void CUpdater::retry()
{
    qInfo().noquote() << NELVO_SOURCE_FILE << __LINE__ << QStringLiteral("重试");
    ++m_retryCount;
    QFile::remove(m_packagePath);
    QString ignored;
    startTransfer(ignored);
}

void CUpdater::processDownloadFinished(QString filePath)
{
    qInfo().noquote() << NELVO_SOURCE_FILE << __LINE__ << QStringLiteral("下载完成，校验MD5");
    if (checkMd5(m_packagePath, m_fullMd5)) {
        UpdateStateFile stateFile(m_stateFilePath);
        stateFile.setState(UpdateState::Downloaded);
        qInfo().noquote() << NELVO_SOURCE_FILE << __LINE__ << QStringLiteral("校验通过");
        Q_EMIT downloadFinished(filePath);
        return;
    }
    qInfo().noquote() << NELVO_SOURCE_FILE << __LINE__ << QStringLiteral("校验失败");
    if (m_retryCount < MaxRetries)
        retry();
}

void CUpdater::processDownloadError(QString filePath, QString errorString)
{
    Q_UNUSED(filePath)
    const QPointer<CUpdater> self(this);
    reportInfo(QStringLiteral("下载失败") + errorString, NELVO_SOURCE_FILE, __LINE__);
    if (!self)
        return;
    if (m_retryCount < MaxRetries) {
        retry();
        return;
    }
    UpdateStateFile stateFile(m_stateFilePath);
    stateFile.setState(UpdateState::Idle);
}

void CUpdater::upgrade()
{
    const QPointer<CUpdater> self(this);
    qInfo().noquote() << NELVO_SOURCE_FILE << __LINE__ << QStringLiteral("解压中");
    Q_EMIT upgradeStart();
    if (!self)
        return;
    m_timerId = startTimer(TickMs, Qt::CoarseTimer);
    m_upgradePercent = 0;
    VCIM::ThreadPool::instance()->start(
        [package = m_packagePath, directory = m_unCompressDir] { return unzipPackage(package, directory); },
        [self = QPointer<CUpdater>(this)](bool success) {
            if (self)
                self->onUnpacked(success);
        });
}

void CUpdater::onUnpacked(bool success)
{
    if (!success) {
        qInfo().noquote() << NELVO_SOURCE_FILE << __LINE__ << QStringLiteral("解压失败");
        return;
    }
    qInfo().noquote() << NELVO_SOURCE_FILE << __LINE__ << QStringLiteral("解压完成,开始升级");
    doCover();
}

void CUpdater::timerEvent(QTimerEvent* /*event*/)
{
    if (m_upgradePercent >= 0.9F)
        return;
    m_upgradePercent = static_cast<float>(m_upgradePercent + 0.05);
    Q_EMIT upgradeProcess(m_upgradePercent);
}

void CUpdater::doCover()
{
    const QString batchFile = appDir() + QStringLiteral("/cover.bat");
    UpdateStateFile stateFile(m_stateFilePath);

    // The state file names the installed version, even if the last check found another one.
    m_localVersion = QVersionNumber::fromString(stateFile.json.value(UpdateKeys::PackageVersion).toString());
    m_changeLog = stateFile.json.value(UpdateKeys::Remarks).toString();
    HostSettings().setValue(UpdateKeys::Version, localVersion());
    saveLocalVersion();
    appendUpdateLog();

    stateFile.json.insert(UpdateKeys::PackageVersion, m_latestVersion);
    stateFile.setState(UpdateState::Idle);
    stateFile.write();
    stateFile.saved = true;

    // The new version is recorded now, so the next steps run even if a slot deletes this object.
    announceCover();

    QByteArray batch;
    readFileBytes(QStringLiteral(":/NelvoPlugin/Login/cover.bat"), batch);
    writeFileBytes(batchFile, batch);
    startBatchFile(batchFile);
    QCoreApplication::quit();
}

void CUpdater::announceCover()
{
    const QPointer<CUpdater> self(this);
    reportInfo(QStringLiteral("稍后将自动重启,请等待"), NELVO_SOURCE_FILE, __LINE__);
    if (self) {
        killTimer(m_timerId);
        m_upgradePercent = 1;
        Q_EMIT upgradeProcess(m_upgradePercent);
    }
    if (self)
        Q_EMIT upgradeEnd();
    if (!self)
        return;
    // Long enough for the user to see the full bar and the message.
    QEventLoop loop;
    QTimer::singleShot(CoverDelayMs, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec();
}
