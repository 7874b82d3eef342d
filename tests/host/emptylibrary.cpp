#include <QtGlobal>

// A library that a host can load but that is no plug-in: it does not export GetNelvoSDKPlugin.
extern "C" Q_DECL_EXPORT int somethingElse()
{
    return 0;
}
