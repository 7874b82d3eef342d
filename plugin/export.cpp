#include "plugin/bimplugin.h"

#include "login/loginview.h"

#include <QCoreApplication>

namespace {

//! \brief The one plug-in object of the process.
//!
//! It outlives the application object, and windows and threads must not. So each Initialize sees to it that
//! what the host doesn't shut down ends with the application object, of which a process may have several in
//! turn. The object itself is never destroyed: static destructors run when the system may already have ended
//! the threads, and while the event loop of a host that calls `exit` is still on the stack.
class ProcessPlugin final : public NelvoPlugin::CBimPlugin
{
public:
    static ProcessPlugin& instance()
    {
        static auto* const plugin = new ProcessPlugin;
        return *plugin;
    }

    bool Initialize() override
    {
        // Qt drops its post routines with each application object.
        qRemovePostRoutine(&endWithApplication);
        qAddPostRoutine(&endWithApplication);
        return CBimPlugin::Initialize();
    }

private:
    static void endWithApplication()
    {
        instance().releaseManagers();
        NelvoPlugin::LoginView::deleteReleased();
    }
};

} // namespace

NelvoSDK::INelvoSDKPlugin* GetNelvoSDKPlugin()
{
    return &ProcessPlugin::instance();
}
