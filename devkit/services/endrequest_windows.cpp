#include "services/endrequest.h"

#include <windows.h>

namespace NelvoDevkit {

namespace {

//! Exists until the process ends: the system calls the handler on its own thread.
HANDLE requested = CreateEventW(nullptr, TRUE, FALSE, nullptr);

BOOL WINAPI heed(DWORD event)
{
    SetEvent(requested);
    // For all other events the system ends the process when this function returns.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

struct EndRequest::Private {
};

EndRequest::EndRequest()
{
    SetConsoleCtrlHandler(&heed, TRUE);
}

EndRequest::~EndRequest()
{
    SetConsoleCtrlHandler(&heed, FALSE);
}

void EndRequest::wait()
{
    WaitForSingleObject(requested, INFINITE);
}

} // namespace NelvoDevkit
