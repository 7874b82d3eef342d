#include "login/logincmdlinemgr.h"

#include "platform/handshake.h"

#include <cstring>

// Notifies the calling program. A separate source without Qt, which can be tested on systems that have only a
// compiler.

namespace {

//! Writes at most two bytes; the mapping has eight.
void writeResult(const std::wstring& mappingName)
{
    NelvoPlugin::SharedMemory* const memory = NelvoPlugin::openSharedMemory(mappingName);
    char* const block = memory ? NelvoPlugin::mapSharedMemory(memory) : nullptr;
    if (block)
        std::memcpy(block, "1", sizeof "1");
}

} // namespace

void CLoginCmdLineMgr::notifyCaller() const
{
    if (m_mappingName.empty() || m_eventName.empty())
        return;
    writeResult(m_mappingName);
    // Set even if nothing could be written: the calling program waits for the event.
    if (NelvoPlugin::NamedEvent* const event = NelvoPlugin::openEvent(m_eventName))
        NelvoPlugin::setEvent(event);
}
