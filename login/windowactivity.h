#pragma once

#include <QObject>
#include <QPointer>

class QQuickView;

namespace NelvoPlugin {

//! \brief Knows whether a QML window is busy: in a call of one of its pages, or handling an event.
//!
//! Qt ends a process in which a page is destroyed while one of its handlers runs, and a window that is about
//! to close can neither be deleted nor shown again. Whoever wants to do either waits until the window is
//! idle. There is one such object for each window, a child of it. GUI thread.
class WindowActivity final : public QObject
{
    Q_OBJECT

public:
    //! The window's own, made when it is first asked for.
    static WindowActivity& of(QQuickView& view);

    bool isBusy() const { return m_scopes > 0; }

    //! The window is busy while one of these exists.
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
    //! The last scope has ended. A handler of a page may still be on the stack, so what destroys a page or
    //! the window has to wait for the event loop.
    void idle();

private:
    explicit WindowActivity(QQuickView& view);

    int m_scopes = 0;
};

} // namespace NelvoPlugin
