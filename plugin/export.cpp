#include "plugin/bimplugin.h"

NelvoSDK::INelvoSDKPlugin* GetNelvoSDKPlugin()
{
    static NelvoPlugin::CBimPlugin plugin;
    return &plugin;
}
