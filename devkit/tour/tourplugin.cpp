#include "tour/signinalone.h"
#include "tour/tour.h"
#include "userinput/userinput.h"

#include <QDeadlineTimer>
#include <QGenericPlugin>
#include <QTimer>

namespace {

using namespace NelvoDevkit;

constexpr int LookEveryMs = 50;
constexpr int PatienceMs = 30000;

void run()
{
    if (qEnvironmentVariableIsSet(StationsVariable))
        runTour(qEnvironmentVariable(StationsVariable));
    else if (qEnvironmentVariableIsSet(AccountVariable))
        signInAlone(qEnvironmentVariable(AccountVariable));
}

//! Whether the host waits for the user: at the login window, or with an enterprise entered and no operation
//! running.
bool isHostIdle()
{
    const auto text = [](const char* name) {
        const QQuickItem* const item = UserInput::findItem(QString::fromLatin1(name));
        return item ? item->property("text").toString() : QString();
    };
    return UserInput::findItem(QStringLiteral("contentLoader")) ||
           (!text("enterprise").isEmpty() && text("activity").isEmpty());
}

//! \brief Starts the tour when the host is idle, or after half a minute.
//!
//! During a sign-in from the command line the host processes events. A tour that started at that time would
//! keep the host's call from returning.
class Starter final : public QObject
{
public:
    Starter()
    {
        connect(&m_timer, &QTimer::timeout, this, &Starter::look);
        m_timer.start(LookEveryMs);
    }

private:
    void look()
    {
        if (!isHostIdle() && !m_patience.hasExpired())
            return;
        m_timer.stop();
        run();
    }

    QTimer m_timer;
    const QDeadlineTimer m_patience{PatienceMs};
};

//! \brief Loads the tour into a host that does not know it: while the application object is constructed, Qt
//!   loads the plug-ins whose names QT_QPA_GENERIC_PLUGINS contains.
class TourPlugin final : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "tour.json")

public:
    QObject* create(const QString& /*name*/, const QString& /*arguments*/) override { return new Starter; }
};

} // namespace

#include "tourplugin.moc"
