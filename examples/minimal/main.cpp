// The smallest host of the Nelvo plug-in. It loads the library, attaches an observer, starts the sign-in,
// receives the session and installs it, lists the enterprise's scene projects, and shuts the plug-in down.

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>
#include <NelvoSDK/LoadPlugin.h>

#include <QGuiApplication>
#include <QTimer>

#include <cstdlib>
#include <iostream>
#include <list>

namespace {

std::string utf8(const std::wstring& text)
{
    return QString::fromStdWString(text).toStdString();
}

class Host final : public QObject, private NelvoSDK::ILoginObserver
{
public:
    //! Creates the managers and attaches the observer before the sign-in starts, because the plug-in passes
    //! each result only once.
    explicit Host(NelvoSDK::INelvoSDKPlugin& plugin) : m_plugin(plugin)
    {
        m_plugin.Initialize();
        m_plugin.GetProjectInfoMgr()->SetPlugin(&m_plugin);
        m_plugin.GetLoginMgr()->GetLoginActor()->Attach(this);
        std::cout << "plug-in " << utf8(m_plugin.GetVersion()) << std::endl;
    }

    //! Runs before the application ends.
    ~Host() override
    {
        m_plugin.GetLoginMgr()->GetLoginActor()->Detach(this);
        m_plugin.Shutdown();
        std::cout << "shut down" << std::endl;
    }

    //! Shows the login window, or runs a sign-in from the command line if the program has exactly one
    //! argument.
    void start() { m_plugin.GetLoginMgr()->Start(); }

    bool hasListedProjects() const { return m_hasListedProjects; }

private:
    //! Also called if the services behind the sign-in did not reply, and after a rejected sign-in from the
    //! command line, which ends the application. The session then has no addresses.
    void OnLoginSucceeded(const NelvoSDK::LoginSession& session) override
    {
        if (session.sdkAddr.empty()) {
            std::cerr << "the sign-in brought no editor service" << std::endl;
            return;
        }
        std::cout << "signed in: " << utf8(session.epName) << ", editor service " << utf8(session.sdkAddr)
                  << std::endl;
        // The login window is still closing, so long work must wait for the event loop. The session is valid
        // only during this call, so the work needs a copy.
        QTimer::singleShot(0, this, [this, session] {
            listProjects(session);
            QCoreApplication::quit();
        });
    }

    //! The login window shows the reason and stays open for another attempt.
    void OnLoginFailed() override { std::cerr << "the sign-in failed" << std::endl; }

    void listProjects(const NelvoSDK::LoginSession& session)
    {
        NelvoSDK::IProjectInfoMgr& manager = *m_plugin.GetProjectInfoMgr();
        manager.ReflushProjOrgInfo(session); // once for each sign-in
        std::list<NelvoSDK::ProjectNode> projects;
        if (!manager.GetServerProjectTree(projects)) {
            std::cerr << "the editor service did not answer" << std::endl;
            return;
        }
        for (const NelvoSDK::ProjectNode& project : projects)
            std::cout << "project: " << utf8(project.name) << std::endl;
        m_hasListedProjects = true;
    }

    NelvoSDK::INelvoSDKPlugin& m_plugin;
    bool m_hasListedProjects = false;
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    const QGuiApplication application(argc, argv);
    QString error;
    NelvoSDK::INelvoSDKPlugin* const plugin =
        NelvoSDK::LoadPlugin(QCoreApplication::applicationDirPath(), &error);
    if (!plugin) {
        std::cerr << error.toStdString() << std::endl;
        return EXIT_FAILURE;
    }

    Host host(*plugin);
    QTimer::singleShot(0, &host, &Host::start); // a sign-in needs the event loop
    QGuiApplication::exec();
    return host.hasListedProjects() ? EXIT_SUCCESS : EXIT_FAILURE;
}
