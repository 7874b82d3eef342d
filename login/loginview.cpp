#include "login/loginview.h"

#include "login/windowactivity.h"

#include <QGuiApplication>
#include <QPointer>

namespace NelvoPlugin {

LoginView::LoginView()
{
    setFlags(flags() | Qt::FramelessWindowHint);
    setResizeMode(QQuickView::SizeViewToRootObject);
    m_activity = &WindowActivity::of(*this);
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

bool LoginView::event(QEvent* event)
{
    if (!m_activity)
        return QQuickView::event(event);
    const WindowActivity::Scope handling(*m_activity);
    return QQuickView::event(event);
}

} // namespace NelvoPlugin
