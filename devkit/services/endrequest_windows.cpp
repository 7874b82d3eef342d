#include "services/endrequest.h"

#include <windows.h>

namespace NelvoDevkit {

namespace {

//! Stays to the end of the process: the system calls the handler on a thread of its own.
HANDLE requested = CreateEventW(nullptr, TRUE, FALSE, nullptr);

BOOL WINAPI heed(DWORD event)
{
    SetEvent(requested);
    // After the other events the system ends the process as soon as this returns.
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
