#include "docs/snippets/update.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QQuickView>

namespace Snippets {

//! [updater]
QObject* findUpdater()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow* window : windows) {
        const auto* const view = qobject_cast<QQuickView*>(window);
        if (!view)
            continue;
        // After Shutdown the window may stay for a moment; its property is null.
        const QVariant updater = view->rootContext()->contextProperty(QStringLiteral("updater"));
        if (auto* const object = updater.value<QObject*>())
            return object;
    }
    return nullptr;
}
//! [updater]

//! [update]
Update::Update(QObject* updater) : m_updater(updater)
{
    // The headers do not declare the updater's class: connect by name.
    connect(updater, SIGNAL(needUpdate(bool)), this, SLOT(answer(bool)));
    connect(updater, SIGNAL(downloadProgress(QString, qint64, qint64)), this,
            SIGNAL(progress(QString, qint64, qint64)));
    connect(updater, SIGNAL(downloadFinished(QString)), this, SIGNAL(downloaded()));
    connect(updater, SIGNAL(readyUpdateInfo(QString)), this, SIGNAL(message(QString)));
}

void Update::check(const QString& url, const QString& token, const QString& productId)
{
    QMetaObject::invokeMethod(m_updater, "checkVersion", Q_ARG(QString, url), Q_ARG(QString, token),
                              Q_ARG(QString, productId));
}

void Update::answer(bool isNewer)
{
    if (isNewer)
        Q_EMIT offered(m_updater->property("latestVersion").toString(),
                       m_updater->property("changeLog").toString());
}

void Update::download()
{
    QMetaObject::invokeMethod(m_updater, "download");
}

void Update::install()
{
    QMetaObject::invokeMethod(m_updater, "upgrade");
}
//! [update]

} // namespace Snippets
