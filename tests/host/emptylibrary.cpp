#include <QtGlobal>

// A library that loads, but is no plug-in: it lacks the export.
extern "C" Q_DECL_EXPORT int somethingElse()
{
    return 0;
}
