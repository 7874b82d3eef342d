#include "tests/support/wine.h"

#include <windows.h>

namespace TestSupport {

bool isUnderWine()
{
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

} // namespace TestSupport
