#include "plugin/bimplugin.h"

#include "login/loginview.h"

#include <QCoreApplication>

namespace {

//! \brief The only plug-in object of the process.
//!
//! The object outlives the application object, but windows and threads must not. So each Initialize registers
//! a routine that deletes the remaining managers when the application object ends; a process may have several
//! application objects one after another. The plug-in object itself is never destroyed: when static
//! destructors run, the system may already have ended the threads, and the event loop of a host that calls
//! `exit` is still on the stack.
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
        // Qt removes its post routines when an application object ends.
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
