#pragma once

#include <QObject>
#include <QPointer>

class QQuickView;

namespace NelvoPlugin {

//! \brief Whether a QML window is busy: in a call of one of its pages, or handling an event.
//!
//! Qt ends a process in which a page is destroyed while one of its handlers runs, and a window that is
//! closing can be neither deleted nor shown again. Code that does one of these waits until the window is
//! idle. Each window has one activity object as a child. GUI thread.
class WindowActivity final : public QObject
{
    Q_OBJECT

public:
    //! The activity of the window, created by the first call.
    static WindowActivity& of(QQuickView& view);

    bool isBusy() const { return m_scopes > 0; }

    //! While a scope exists, the window is busy.
    class Scope
    {
    public:
        explicit Scope(WindowActivity& activity);
        ~Scope();
        Q_DISABLE_COPY(Scope)

    private:
        QPointer<WindowActivity> m_activity;
    };

Q_SIGNALS:
    //! The last scope has ended. A handler of a page may still be on the stack, so destroy pages or the
    //! window from the event loop only.
    void idle();

private:
    explicit WindowActivity(QQuickView& view);

    int m_scopes = 0;
};

} // namespace NelvoPlugin
