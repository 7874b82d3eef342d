#include "userinput/userinput.h"

#include <QGenericPlugin>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>

namespace {

constexpr int LookEveryMs = 200;

//! \brief Operates the example with the BIM dialog: chooses the first model and then closes the window.
class ModelChooser final : public QObject
{
public:
    ModelChooser()
    {
        connect(&m_timer, &QTimer::timeout, this, &ModelChooser::look);
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
        const QQuickItem* const chosen = UserInput::findItem(window, QStringLiteral("chosenText"));
        if (!chosen || !window->isVisible())
            return;
        if (!chosen->property("text").toString().isEmpty())
            window->close();
        else if (const QQuickItem* button = UserInput::findItem(window, QStringLiteral("downloadButton")))
            UserInput::click(button);
    }

    QTimer m_timer;
};

class ModelChooserPlugin final : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "modelchooser.json")

public:
    QObject* create(const QString& /*name*/, const QString& /*arguments*/) override
    {
        return new ModelChooser;
    }
};

} // namespace

#include "modelchooser.moc"
