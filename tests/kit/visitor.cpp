#include "tests/e2e/userinput.h"

#include <QGenericPlugin>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>

namespace {

constexpr int LookEveryMs = 200;

//! \brief A person at the example with the BIM dialog: chooses the first model and closes the window.
class Visitor final : public QObject
{
public:
    Visitor()
    {
        connect(&m_timer, &QTimer::timeout, this, &Visitor::look);
        m_timer.start(LookEveryMs);
    }

private:
    static void look()
    {
        const QWindowList windows = QGuiApplication::topLevelWindows();
        for (QWindow* window : windows)
            visit(qobject_cast<QQuickWindow*>(window));
    }

    static void visit(QQuickWindow* window)
    {
        const QQuickItem* const chosen = E2e::findItem(window, QStringLiteral("chosenText"));
        if (!chosen || !window->isVisible())
            return;
        if (!chosen->property("text").toString().isEmpty())
            window->close();
        else if (const QQuickItem* button = E2e::findItem(window, QStringLiteral("downloadButton")))
            E2e::click(window, button);
    }

    QTimer m_timer;
};

class VisitorPlugin final : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "visitor.json")

public:
    QObject* create(const QString& /*name*/, const QString& /*arguments*/) override { return new Visitor; }
};

} // namespace

#include "visitor.moc"
