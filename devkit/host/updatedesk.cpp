#include "host/updatedesk.h"

#include <QGuiApplication>
#include <QMetaObject>
#include <QQmlContext>
#include <QQuickItem>
#include <QUrl>

#include <algorithm>

namespace NelvoDevkit {

namespace {

const auto DownloadPage = QStringLiteral("DownloadComp.qml");
const auto CoverPage = QStringLiteral("CoverComp.qml");
const auto LastPage = QStringLiteral("ValidComp.qml");

QString textOf(const QObject* object, const char* property)
{
    return object ? object->property(property).toString() : QString();
}

} // namespace

UpdateDesk::UpdateDesk(LogModel& log, OperationQueue& queue) : m_log(log), m_queue(queue)
{
    findUpdater();
    if (m_updater)
        connectUpdater();
}

void UpdateDesk::findUpdater()
{
    const QWindowList windows = QGuiApplication::allWindows();
    for (QWindow* window : windows) {
        auto* const view = qobject_cast<QQuickView*>(window);
        if (!view)
            continue;
        m_loginWindow = view;
        m_updater = view->rootContext()->contextProperty(QStringLiteral("updater")).value<QObject*>();
        if (m_updater)
            return;
    }
}

void UpdateDesk::connectUpdater()
{
    connect(m_updater, SIGNAL(localVersionChanged()), this, SIGNAL(changed()));
    connect(m_updater, SIGNAL(needUpdate(bool)), this, SLOT(onNeedUpdate(bool)));
    connect(m_updater, SIGNAL(readyUpdateInfo(QString)), this, SLOT(onInfo(QString)));
    connect(m_updater, SIGNAL(readyUpdateError(QString)), this, SLOT(onInfo(QString)));
    connect(m_updater, SIGNAL(downloadStarted(QString, qint64)), this,
            SLOT(onDownloadStarted(QString, qint64)));
    connect(m_updater, SIGNAL(downloadProgress(QString, qint64, qint64)), this,
            SLOT(onDownloadProgress(QString, qint64, qint64)));
    connect(m_updater, SIGNAL(downloadFinished(QString)), this, SLOT(onDownloadFinished(QString)));
    connect(m_updater, SIGNAL(upgradeStart()), this, SLOT(onUpgradeStart()));
    connect(m_updater, SIGNAL(upgradeProcess(float)), this, SLOT(onUpgradeProcess(float)));
    connect(m_updater, SIGNAL(upgradeEnd()), this, SLOT(onUpgradeEnd()));
}

void UpdateDesk::setService(const UpdateSource& service)
{
    m_service = service;
    Q_EMIT changed();
}

bool UpdateDesk::canCheck() const
{
    const bool atWork =
        m_state == State::Checking || m_state == State::Installing || m_state == State::Restarting;
    return m_updater && !m_service.address.isEmpty() && !atWork;
}

QString UpdateDesk::installedVersion() const
{
    return textOf(m_updater, "localVersion");
}

QString UpdateDesk::version() const
{
    return textOf(m_updater, "latestVersion");
}

QString UpdateDesk::changeLog() const
{
    return textOf(m_updater, "changeLog");
}

void UpdateDesk::check()
{
    if (!canCheck())
        return;
    enter(State::Checking);
    m_queue.add(QStringLiteral("检查更新"), [this] { askService(); });
}

void UpdateDesk::askService()
{
    watchPages();
    m_log.logAction(
        QStringLiteral("updater.checkVersion: \"%1\" at %2").arg(m_service.product, m_service.address));
    QMetaObject::invokeMethod(m_updater, "checkVersion", Q_ARG(QString, m_service.address),
                              Q_ARG(QString, m_service.token), Q_ARG(QString, m_service.product));
}

void UpdateDesk::watchPages()
{
    if (!m_loginWindow->isVisible()) {
        // Its hidden page would treat the result as a step of a sign-in.
        m_loginWindow->setSource({});
        return;
    }
    const QQuickItem* const root = m_loginWindow->rootObject();
    QObject* const pages = root ? root->findChild<QObject*>(QStringLiteral("contentLoader")) : nullptr;
    if (pages && pages != m_pages) {
        // Queued: the next page is loaded then, and the click that requested it has been handled.
        connect(pages, SIGNAL(sourceChanged()), this, SLOT(onPageChanged()), Qt::QueuedConnection);
    }
    m_pages = pages;
    m_page = shownPage();
}

QString UpdateDesk::shownPage() const
{
    return m_pages ? m_pages->property("source").toUrl().fileName() : QString();
}

void UpdateDesk::onPageChanged()
{
    const QString page = shownPage();
    if (page == m_page)
        return;
    m_page = page;
    if (page == DownloadPage) {
        download();
    } else if (page == CoverPage) {
        install();
    } else if (page == LastPage && m_cameBetween) {
        m_cameBetween = false;
        if (m_state == State::Offered)
            enter(State::Idle);
        Q_EMIT loginFormNeeded();
    }
}

void UpdateDesk::download()
{
    if (m_state != State::Offered && m_state != State::Failed)
        return;
    m_bytesReceived = 0;
    m_bytesTotal = 0;
    m_progress = 0;
    enter(State::Downloading);
    call("download");
}

void UpdateDesk::install()
{
    if (m_state == State::Downloaded)
        call("upgrade");
}

void UpdateDesk::call(const char* method)
{
    m_log.logAction(QStringLiteral("updater.") + QLatin1String(method));
    QMetaObject::invokeMethod(m_updater, method);
}

void UpdateDesk::dismiss()
{
    if (m_state == State::NothingNewer || m_state == State::Offered || m_state == State::Failed)
        enter(State::Idle);
}

void UpdateDesk::onNeedUpdate(bool need)
{
    m_cameBetween = m_pages && m_page != LastPage;
    m_log.logCall(need ? QStringLiteral("updater: needUpdate: true, version \"%1\"").arg(version())
                       : QStringLiteral("updater: needUpdate: false"));
    enter(need ? State::Offered : State::NothingNewer);
}

void UpdateDesk::onInfo(const QString& text)
{
    m_log.logCall(QStringLiteral("updater: readyUpdateInfo: ") + text);
    m_message = text;
    // During a download the updater reports failures only, and each of them twice.
    if (m_state == State::Downloading || m_state == State::Failed) {
        m_state = State::Failed;
        m_error = text;
    }
    Q_EMIT changed();
}

void UpdateDesk::onDownloadStarted(const QString& filePath, qint64 bytesTotal)
{
    m_log.logCall(QStringLiteral("updater: downloadStarted: ") + filePath);
    m_bytesTotal = bytesTotal;
    enter(State::Downloading);
}

void UpdateDesk::onDownloadProgress(const QString& /*filePath*/, qint64 bytesReceived, qint64 bytesTotal)
{
    m_bytesReceived = bytesReceived;
    m_bytesTotal = bytesTotal;
    // The total is 0 if the package is larger than the updater can count.
    m_progress = bytesTotal > 0
                     ? std::min(1.0, static_cast<qreal>(bytesReceived) / static_cast<qreal>(bytesTotal))
                     : 0;
    enter(State::Downloading);
}

void UpdateDesk::onDownloadFinished(const QString& filePath)
{
    m_log.logCall(QStringLiteral("updater: downloadFinished: ") + filePath);
    m_progress = 1;
    enter(State::Downloaded);
}

void UpdateDesk::onUpgradeStart()
{
    m_log.logCall(QStringLiteral("updater: upgradeStart"));
    m_progress = 0;
    enter(State::Installing);
}

void UpdateDesk::onUpgradeProcess(float percent)
{
    m_progress = static_cast<qreal>(percent);
    Q_EMIT changed();
}

void UpdateDesk::onUpgradeEnd()
{
    m_log.logCall(QStringLiteral("updater: upgradeEnd"));
    enter(State::Restarting);
}

void UpdateDesk::enter(State state)
{
    m_state = state;
    m_error.clear();
    Q_EMIT changed();
}

} // namespace NelvoDevkit
