#include "tests/support/crashdialog.h"

void TestSupport::disableCrashDialog() {}
