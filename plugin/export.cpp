#include "plugin/bimplugin.h"

#include <QCoreApplication>

namespace {

//! \brief The one plug-in object of the process.
//!
//! It outlives the application object, and windows can't. So what a host has not shut down by then goes with
//! the application.
class ProcessPlugin final
{
public:
    ProcessPlugin() { qAddPostRoutine(&releaseManagers); }

    ~ProcessPlugin() { qRemovePostRoutine(&releaseManagers); }

    ProcessPlugin(const ProcessPlugin&) = delete;
    ProcessPlugin& operator=(const ProcessPlugin&) = delete;

    static NelvoPlugin::CBimPlugin& plugin()
    {
        static ProcessPlugin process;
        return process.m_plugin;
    }

private:
    static void releaseManagers() { plugin().releaseManagers(); }

    NelvoPlugin::CBimPlugin m_plugin;
};

} // namespace

NelvoSDK::INelvoSDKPlugin* GetNelvoSDKPlugin()
{
    return &ProcessPlugin::plugin();
}
