//! \file
//! \brief Calls of a host in signals of the login window.

#include "tests/e2e/survival/scenario.h"
#include "tests/e2e/updatepages.h"
#include "userinput/userinput.h"

#include <QGuiApplication>

namespace Survival {

namespace {

//! How a login window closes, and the signal in which the host reacts.
struct Closing {
    std::function<void(QQuickView&)> close;
    bool inLastWindowClosed;
};

void clickCloseButton(QQuickView& window)
{
    UserInput::click(UserInput::findItem(&window, QStringLiteral("closeButton")));
}

void closeByTheHost(QQuickView& window)
{
    window.close();
}

QQuickView& showWindow()
{
    showLogin();
    QQuickView* const window = E2e::loginWindow();
    if (!window || !UserInput::activate(window))
        fail("the login window shows");
    return *window;
}

int reactToTheEnd(Arguments arguments, const Closing& closing, const Reaction& reaction)
{
    const QGuiApplication application(arguments.count, arguments.values);
    initialize();
    QQuickView& window = showWindow();
    bool hasReacted = false;
    const auto react = [&] {
        if (!std::exchange(hasReacted, true))
            reaction();
    };
    if (closing.inLastWindowClosed)
        QObject::connect(&application, &QGuiApplication::lastWindowClosed, &application, react);
    else
        QObject::connect(&window, &QWindow::visibleChanged, &application, react);
    QTimer::singleShot(0, [&] { closing.close(window); });
    require(QCoreApplication::exec() == 0 && hasReacted, "closing ends the application");
    if (!E2e::plugin()->GetLoginMgr())
        initialize();
    showWindow();
    return Survived;
}

//! In an editor that continues, the window is shown again.
int showAgainWhenClosed(Arguments arguments)
{
    const QGuiApplication application(arguments.count, arguments.values);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    initialize();
    QQuickView& window = showWindow();
    QStringList changes;
    QObject::connect(&window, &QWindow::visibleChanged, &application, [&](bool visible) {
        changes.append(visible ? QStringLiteral("shown") : QStringLiteral("closed"));
        if (!visible)
            showLogin();
    });
    window.close();
    waitUntil([&] { return changes.size() > 1; }, "the window comes back");
    require(changes == QStringList({QStringLiteral("closed"), QStringLiteral("shown")}), "and stays");
    require(UserInput::activate(&window), "it shows");
    window.disconnect(&application);
    return Survived;
}

} // namespace

void addWindowEvents(Scenarios& scenarios)
{
    const std::map<std::string, Reaction> reactions{
        {"Shutdown", shutDown}, {"Initialize", initialize}, {"ShowLogin", showLogin}};
    const std::map<std::string, Closing> closings{
        {"the close button, lastWindowClosed", {clickCloseButton, true}},
        {"the close button, visibleChanged", {clickCloseButton, false}},
        {"the host's close, lastWindowClosed", {closeByTheHost, true}},
        {"the host's close, visibleChanged", {closeByTheHost, false}},
    };
    for (const auto& [reactionName, reaction] : reactions) {
        for (const auto& [closingName, closing] : closings) {
            scenarios[joined(reactionName, " at ", closingName)] = [reaction = reaction,
                                                                    closing = closing](Arguments arguments) {
                return reactToTheEnd(arguments, closing, reaction);
            };
        }
    }
    scenarios["ShowLogin whenever the window closes"] = showAgainWhenClosed;
}

} // namespace Survival
