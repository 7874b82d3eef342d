#include "login/windowactivity.h"

#include <QQuickView>

namespace NelvoPlugin {

WindowActivity::WindowActivity(QQuickView& view) : QObject(&view) {}

WindowActivity& WindowActivity::of(QQuickView& view)
{
    auto* activity = view.findChild<WindowActivity*>(QString(), Qt::FindDirectChildrenOnly);
    return activity ? *activity : *new WindowActivity(view);
}

WindowActivity::Scope::Scope(WindowActivity& activity) : m_activity(&activity)
{
    ++m_activity->m_scopes;
}

WindowActivity::Scope::~Scope()
{
    if (m_activity && --m_activity->m_scopes == 0)
        Q_EMIT m_activity->idle();
}

} // namespace NelvoPlugin
