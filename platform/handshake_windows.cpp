#include "platform/handshake.h"

#include <windows.h>

namespace NelvoPlugin {

// The pointers of the interface are handles of Windows.

SharedMemory* openSharedMemory(const std::wstring& name)
{
    return static_cast<SharedMemory*>(OpenFileMappingW(FILE_MAP_WRITE, FALSE, name.c_str()));
}

char* mapSharedMemory(SharedMemory* memory)
{
    return static_cast<char*>(MapViewOfFile(memory, FILE_MAP_WRITE, 0, 0, 0));
}

NamedEvent* openEvent(const std::wstring& name)
{
    return static_cast<NamedEvent*>(OpenEventW(EVENT_ALL_ACCESS, TRUE, name.c_str()));
}

void setEvent(NamedEvent* event)
{
    SetEvent(event);
}

} // namespace NelvoPlugin
