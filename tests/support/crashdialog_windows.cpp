#include "tests/support/crashdialog.h"

#include <windows.h>

void TestSupport::disableCrashDialog()
{
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
}
