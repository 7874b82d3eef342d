#include <QtGlobal>

// A library that can be loaded but is no plug-in: the export is missing.
extern "C" Q_DECL_EXPORT int somethingElse()
{
    return 0;
}
