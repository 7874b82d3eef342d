#include "login/loginview.h"

#include "login/windowactivity.h"

#include <QGuiApplication>
#include <QPointer>
#include <QQuickItem>
#include <QScreen>

namespace NelvoPlugin {

QRect fittedGeometry(QPoint position, QSize page, const QRect& available)
{
    QRect fitted(position, page);
    if (page.width() > available.width() || page.height() > available.height()) {
        fitted.setSize(page.scaled(available.size(), Qt::KeepAspectRatio));
        fitted.moveCenter(available.center());
    }
    fitted.moveLeft(qBound(available.left(), fitted.left(), available.right() + 1 - fitted.width()));
    fitted.moveTop(qBound(available.top(), fitted.top(), available.bottom() + 1 - fitted.height()));
    return fitted;
}

LoginView::LoginView()
{
    setFlags(flags() | Qt::FramelessWindowHint);
    setResizeMode(QQuickView::SizeViewToRootObject);
    m_activity = &WindowActivity::of(*this);
    // A page that is loaded into the visible window gives the window its size again.
    connect(this, &QQuickView::statusChanged, this, [this] {
        if (isVisible())
            fitToScreen();
    });
}

void LoginView::Deleter::operator()(LoginView* view) const
{
    if (!view->m_activity->isBusy()) {
        delete view;
        return;
    }
    view->m_isReleased = true;
    view->hide();
    // Checked each time the window becomes idle: it may be busy again when the event loop runs.
    const auto deleteIfIdle = [pointer = QPointer<LoginView>(view)] {
        if (pointer && !pointer->m_activity->isBusy())
            delete pointer;
    };
    connect(view->m_activity, &WindowActivity::idle, QCoreApplication::instance(), deleteIfIdle,
            Qt::QueuedConnection);
}

void LoginView::deleteReleased()
{
    const QWindowList windows = QGuiApplication::allWindows();
    for (QWindow* window : windows) {
        const auto* const view = qobject_cast<LoginView*>(window);
        if (view && view->m_isReleased)
            delete view;
    }
}

void LoginView::fitToScreen()
{
    const QQuickItem* const page = rootObject();
    if (!page || !screen())
        return;
    const QRect fitted = fittedGeometry(position(), page->size().toSize(), screen()->availableGeometry());
    // The whole content and not the page alone: the lists of the page open beside it.
    contentItem()->setTransformOrigin(QQuickItem::TopLeft);
    contentItem()->setScale(fitted.height() / page->height());
    if (fitted != geometry())
        setGeometry(fitted);
}

bool LoginView::event(QEvent* event)
{
    if (!m_activity)
        return QQuickView::event(event);
    if (event->type() == QEvent::Show)
        fitToScreen();
    const WindowActivity::Scope handling(*m_activity);
    return QQuickView::event(event);
}

} // namespace NelvoPlugin
