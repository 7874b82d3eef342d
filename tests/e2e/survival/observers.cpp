//! \file
//! \brief Calls of a host inside an observer's call.

#include "tests/bim/pdsstandins.h"
#include "tests/e2e/bimscene.h"
#include "tests/e2e/loginform.h"
#include "tests/e2e/survival/scenario.h"
#include "tests/e2e/updatepages.h"
#include "tests/support/accounts.h"
#include "userinput/userinput.h"

#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <QEventLoop>
#include <QGuiApplication>
#include <QTimerEvent>

namespace Survival {

namespace {

using TestSupport::LoginRecorder;
using TestSupport::MessageRecorder;
using TestSupport::StartedServices;

const auto User = QStringLiteral("zhangwei"); // has one enterprise, so the choice is skipped

//! Signs in through the window, as a user does.
int signInByMouse(Arguments arguments, const QString& password,
                  const std::function<void(LoginRecorder&, const Reaction&)>& react, const Reaction& reaction)
{
    const QGuiApplication application(arguments.count, arguments.values);
    StartedServices services;
    E2e::PluginHost host(services.signInUrl());
    bool hasReacted = false;
    react(host.observer, [&] {
        if (!std::exchange(hasReacted, true))
            reaction();
    });
    E2e::plugin()->GetLoginMgr()->Start();
    QTimer::singleShot(0, [&] {
        require(UserInput::activate(E2e::loginWindow()), "the login window shows");
        E2e::submitForm(E2e::loginWindow(), User, password, services.signInUrl());
        waitUntil([&] { return hasReacted; }, "the observer is called");
        // The event loop deletes the objects that the reaction has left.
        QTimer::singleShot(0, [] { QCoreApplication::exit(Survived); });
    });
    return QCoreApplication::exec();
}

int inSucceeded(Arguments arguments, const Reaction& reaction)
{
    return signInByMouse(
        arguments, TestSupport::passwordOf(User),
        [](LoginRecorder& observer, const Reaction& react) { observer.whenSucceeded = react; }, reaction);
}

int inFailed(Arguments arguments, const Reaction& reaction)
{
    return signInByMouse(
        arguments, QStringLiteral("wrong"),
        [](LoginRecorder& observer, const Reaction& react) { observer.whenFailed = react; }, reaction);
}

//! A host with its own dialog, during which a new release is found.
void loadWhileAnUpdateArrives()
{
    QEventLoop dialog;
    QTimer::singleShot(0, [&dialog] {
        QMetaObject::invokeMethod(E2e::updater(), "needUpdate", Q_ARG(bool, true));
        dialog.quit();
    });
    dialog.exec();
    require(E2e::shownPage() == QStringLiteral("validComp"), "the page stays during its own call");
    QTimer::singleShot(0, [] {
        waitUntil([] { return E2e::shownPage() == QStringLiteral("updateComp"); }, "the offer is there then");
    });
}

int inMessage(Arguments arguments, void (NelvoSDK::IMessageMgr::*notify)(const QString&),
              const Reaction& reaction)
{
    const QGuiApplication application(arguments.count, arguments.values);
    initialize();
    bool hasReacted = false;
    MessageRecorder first;
    first.whenHeard = [&] {
        hasReacted = true;
        reaction();
    };
    E2e::plugin()->GetMessageMgr()->Attach(&first);
    (E2e::plugin()->GetMessageMgr()->*notify)(QStringLiteral("text"));
    require(hasReacted, "the observer is called");
    E2e::plugin()->GetMessageMgr()->Detach(&first);
    shutDown();
    return Survived;
}

//! The plug-in's own message arrives during a request of the session watch.
int inPushOut(Arguments arguments, const Reaction& reaction)
{
    const QGuiApplication application(arguments.count, arguments.values);
    StartedServices services;
    const E2e::PluginHost host(services.signInUrl());
    NelvoSDK::IProjectInfoMgr* const projects = E2e::plugin()->GetProjectInfoMgr();
    projects->SetPlugin(E2e::plugin());
    projects->ReflushProjOrgInfo(host.signIn(services.signInUrl(), User));
    bool hasReacted = false;
    MessageRecorder observer;
    observer.whenHeard = [&] {
        hasReacted = true;
        reaction();
    };
    E2e::plugin()->GetMessageMgr()->Attach(&observer);
    services.editor().pushOut(User);
    QTimerEvent tick(0);
    QCoreApplication::sendEvent(dynamic_cast<QObject*>(projects), &tick);
    require(hasReacted, "the observer is called");
    E2e::plugin()->GetMessageMgr()->Detach(&observer);
    return Survived;
}

//! Uses the dialog by mouse until the host has reacted.
void useDialog(E2e::BimScene& scene, const bool& hasReacted)
{
    const auto name = [&scene] { return scene.names().constFirst(); };
    const std::vector<std::function<void()>> steps{
        [] { E2e::plugin()->GetPdsMgr()->OpenBimDialog(); },
        [&] { waitUntil([&] { return hasReacted || !scene.names().isEmpty(); }, "models show"); },
        [&] { scene.clickInRow(name(), QStringLiteral("outlineButton")); },
        [&] { scene.clickInRow(name(), QStringLiteral("downloadButton")); },
        [&] { scene.clickPart(QStringLiteral("closeButton")); },
    };
    for (const auto& step : steps) {
        if (!hasReacted)
            step();
    }
}

int inDialog(Arguments arguments, const char* call, const Reaction& reaction)
{
    const QGuiApplication application(arguments.count, arguments.values);
    StartedServices services;
    const E2e::PluginHost host(services.signInUrl());
    E2e::plugin()->GetProjectInfoMgr()->SetPlugin(E2e::plugin());
    E2e::plugin()->GetProjectInfoMgr()->ReflushProjOrgInfo(host.signIn(services.signInUrl(), User));
    E2e::ImportControl control;
    E2e::BimScene scene(control);
    bool hasReacted = false;
    PdsObserver observer;
    observer.whenCalled = [&](const QString& text) {
        if (text.startsWith(QLatin1String(call)) && !std::exchange(hasReacted, true))
            reaction();
    };
    E2e::plugin()->GetPdsMgr()->Attach(&observer);
    require(scene.show(), "the scene shows");
    QTimer::singleShot(0, [&] {
        useDialog(scene, hasReacted);
        waitUntil([&] { return hasReacted; }, "the observer is called");
        QTimer::singleShot(0, [] { QCoreApplication::exit(Survived); });
    });
    return QCoreApplication::exec();
}

} // namespace

void addObservers(Scenarios& scenarios)
{
    const std::map<std::string, Reaction> reactions{{"Shutdown", shutDown}, {"Initialize", initialize}};
    for (const auto& [name, reaction] : reactions) {
        const auto add = [&scenarios, name = name, reaction = reaction](const char* call, auto scenario) {
            scenarios[joined(name, " in ", call)] = [scenario, reaction](Arguments arguments) {
                return scenario(arguments, reaction);
            };
        };
        add("OnLoginSucceeded", inSucceeded);
        add("OnLoginFailed", inFailed);
        add("a push-out", inPushOut);
        const std::map<const char*, void (NelvoSDK::IMessageMgr::*)(const QString&)> messages{
            {"OnMessageFirst", &NelvoSDK::IMessageMgr::NotifyFirst},
            {"OnMessageSecond", &NelvoSDK::IMessageMgr::NotifySecond},
            {"OnMessageThird", &NelvoSDK::IMessageMgr::NotifyThird}};
        for (const auto& [call, notify] : messages) {
            add(call, [notify = notify](Arguments arguments, const Reaction& react) {
                return inMessage(arguments, notify, react);
            });
        }
        for (const char* call : {"opened", "closed", "cleared", "synced", "download", "convert"}) {
            add(call, [call](Arguments arguments, const Reaction& react) {
                return inDialog(arguments, call, react);
            });
        }
    }
    scenarios["loading in OnLoginSucceeded while an update arrives"] = [](Arguments arguments) {
        return inSucceeded(arguments, loadWhileAnUpdateArrives);
    };
}

} // namespace Survival
