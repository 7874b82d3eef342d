//! \file
//! \brief Calls of a host while another call waits for a service.

#include "tests/e2e/survival/scenario.h"
#include "tests/e2e/updatepages.h"
#include "tests/support/accounts.h"

#include <NelvoSDK/IProjectInfoMgr.h>

#include <QGuiApplication>
#include <QTimerEvent>

namespace Survival {

namespace {

using NelvoDevkit::Fault;
using NelvoDevkit::Services;
using NelvoSDK::IProjectInfoMgr;
using TestSupport::StartedServices;

const auto User = QStringLiteral("zhangwei");

//! A request without a reply, and the call that sends it.
struct Wait {
    QByteArray method;
    QString path;
    std::function<void(const Services&, const E2e::PluginHost&)> call;
};

IProjectInfoMgr& projects()
{
    return *E2e::plugin()->GetProjectInfoMgr();
}

void install(const Services& services, const E2e::PluginHost& host)
{
    projects().SetPlugin(E2e::plugin());
    projects().ReflushProjOrgInfo(host.signIn(services.signInUrl(), User));
}

//! The first sign-in provides the data that the call needs; then the services stop replying.
int reactDuring(Arguments arguments, const Wait& wait, const Reaction& reaction)
{
    const QGuiApplication application(arguments.count, arguments.values);
    StartedServices services;
    E2e::PluginHost host(services.signInUrl());
    install(services, host);
    host.observer.sessions.clear();

    services.log().clear();
    NelvoDevkit::FaultRule stall;
    stall.fault = Fault::Stall;
    stall.path = wait.path;
    stall.method = wait.method;
    services.addFault(stall);
    const WhenRequested trigger(services, wait.method, wait.path, reaction);
    wait.call(services, host);
    require(trigger.hasReacted(), "the reaction came during the call");
    require(host.observer.sessions.isEmpty() && host.observer.failures == 0, "no observer is called");

    // The process works normally, although requests are still unanswered.
    services.clearFaults();
    if (!E2e::plugin()->GetLoginMgr())
        initialize();
    waitUntil([] { return QGuiApplication::allWindows().size() == 1; }, "the earlier window is gone");
    E2e::plugin()->GetLoginMgr()->GetLoginActor()->Attach(&host.observer);
    require(!host.signIn(services.signInUrl(), User).sdkAddr.empty(), "signed in afterwards");
    return Survived;
}

QString signIn(const Services& services, const E2e::PluginHost& host)
{
    QString message;
    QMetaObject::invokeMethod(host.loginCtrl(), "login", Q_RETURN_ARG(QString, message), Q_ARG(QString, User),
                              Q_ARG(QString, TestSupport::passwordOf(User)),
                              Q_ARG(QString, services.signInUrl()), Q_ARG(QString, QString()));
    return message;
}

void login(const Services& services, const E2e::PluginHost& host)
{
    require(!signIn(services, host).isEmpty(), "a sign-in that ends early is no success");
}

void onLogin(const Services& services, const E2e::PluginHost& host)
{
    require(signIn(services, host).isEmpty(), "the form is accepted");
    QMetaObject::invokeMethod(host.loginCtrl(), "onLogin", Q_ARG(QString, services.signInUrl()),
                              Q_ARG(QString, QStringLiteral("1001")), Q_ARG(QString, QStringLiteral("a")));
}

void refresh(const Services& services, const E2e::PluginHost& /*host*/)
{
    NelvoSDK::LoginSession session;
    session.sdkAddr = services.editorUrl().toStdWString();
    projects().ReflushProjOrgInfo(session);
}

void tick(const Services& /*services*/, const E2e::PluginHost& /*host*/)
{
    QTimerEvent event(0);
    QCoreApplication::sendEvent(dynamic_cast<QObject*>(&projects()), &event);
}

void list(const Services& /*services*/, const E2e::PluginHost& /*host*/)
{
    std::list<NelvoSDK::ProjectNode> found;
    require(!projects().GetServerProjectTree(found), "a list that ends early is no list");
}

void add(const Services& /*services*/, const E2e::PluginHost& /*host*/)
{
    NelvoSDK::ProjectNode project;
    project.id = L"new";
    project.attrs[L"deptId"] = L"1";
    projects().AddLocalProject({project.id, L"name", project.attrs});
    projects().OnUploadProject(project, nullptr, true);
}

void rename(const Services& /*services*/, const E2e::PluginHost& /*host*/)
{
    std::list<NelvoSDK::ProjectNode> found;
    require(projects().GetServerProjectTree(found) && !found.empty(), "there are projects");
    found.front().name = L"another";
    projects().OnUploadProject(found.front(), nullptr, true);
}

void bind(const Services& /*services*/, const E2e::PluginHost& /*host*/)
{
    projects().OnUploadSdkProperty(QStringLiteral("p"), {{QStringLiteral("a"), QStringLiteral("1")}});
}

void check(const Services& services, const E2e::PluginHost& /*host*/)
{
    E2e::checkVersion(services.updateUrl(), services.updates().token(), QStringLiteral("86"));
}

void nested(const Services& services, const E2e::PluginHost& host)
{
    QTimer::singleShot(0, [&] { tick(services, host); });
    login(services, host);
}

//! A sign-in from the command line, which is the application's only argument.
int duringTheCommandLine(Arguments arguments, const QString& path)
{
    StartedServices services;
    QByteArray argument = User.toUtf8() + "$$e10adc3949ba59abbe56e057f20f883e$$" +
                          services.signInUrl().toUtf8() + "$$event$$mapping$$1001";
    char* values[] = {arguments.values[0], argument.data(), nullptr};
    int count = 2;
    const QGuiApplication application(count, values);
    const E2e::PluginHost host(services.signInUrl());
    NelvoDevkit::FaultRule stall;
    stall.fault = Fault::Stall;
    stall.path = path;
    services.addFault(stall);
    const WhenRequested trigger(services, "GET", path, shutDown);
    E2e::plugin()->GetLoginMgr()->Start();
    require(trigger.hasReacted(), "Shutdown ran inside Start");
    require(host.observer.sessions.isEmpty() && host.observer.failures == 0, "no observer is called");
    return Survived;
}

int duringTheLogout(Arguments arguments)
{
    const QGuiApplication application(arguments.count, arguments.values);
    StartedServices services;
    const E2e::PluginHost host(services.signInUrl());
    host.signIn(services.signInUrl(), User);
    const auto path = QStringLiteral("/rs/casLogin/logout");
    NelvoDevkit::FaultRule stall;
    stall.fault = Fault::Stall;
    stall.path = path;
    services.addFault(stall);
    const WhenRequested trigger(services, "GET", path, shutDown);
    QTimer::singleShot(0, [] { QCoreApplication::exit(Survived); });
    const int status = QCoreApplication::exec();
    require(trigger.hasReacted(), "Shutdown ran inside the logout");
    return status;
}

} // namespace

void addWaits(Scenarios& scenarios)
{
    const std::map<std::string, Wait> waits{
        {"login, form", {"GET", "/login", login}},
        {"login, answer", {"POST", "/login", login}},
        {"login, companies", {"GET", "/rs/casLogin/listCompany", login}},
        {"onLogin, binding", {"POST", "/rs/casLogin/casLogin", onLogin}},
        {"onLogin, addresses", {"GET", "/rs/casLogin/serverUrl", onLogin}},
        {"onLogin, token", {"GET", "/rs/cim/nelvo/client_token", onLogin}},
        {"onLogin, heartbeat", {"GET", "/org/heartbeat", onLogin}},
        {"refresh", {"GET", "/org/tree", refresh}},
        {"tick", {"GET", "/org/heartbeat", tick}},
        {"list", {"GET", "/scene/project", list}},
        {"add", {"POST", "/scene/project", add}},
        {"rename", {"PUT", "/scene/project", rename}},
        {"unbind", {"POST", "/equipment/bind/deleteAll/p", bind}},
        {"bind", {"POST", "/equipment/bind/batchAdd/p", bind}},
        {"check", {"POST", "/v1.0/service/sys/productVersion/findLatest", check}},
        {"tick inside login", {"GET", "/org/heartbeat", nested}},
    };
    for (const auto& [name, wait] : waits) {
        scenarios["Shutdown during " + name] = [wait = wait](Arguments arguments) {
            return reactDuring(arguments, wait, shutDown);
        };
        scenarios["Initialize during " + name] = [wait = wait](Arguments arguments) {
            return reactDuring(arguments, wait, initialize);
        };
    }
    scenarios["Shutdown during Start, form"] = [](Arguments arguments) {
        return duringTheCommandLine(arguments, QStringLiteral("/login"));
    };
    scenarios["Shutdown during Start, token"] = [](Arguments arguments) {
        return duringTheCommandLine(arguments, QStringLiteral("/rs/cim/nelvo/client_token"));
    };
    scenarios["Shutdown during the logout"] = duringTheLogout;
}

} // namespace Survival
