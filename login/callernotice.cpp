#include "login/logincmdlinemgr.h"

#include "platform/handshake.h"

#include <cstring>

// The word back to the caller. It has a source of its own, without Qt, so that it can be tried on systems
// for which only a compiler is at hand.

namespace {

//! At most two bytes, of the eight that the caller has room for.
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
    // Also where nothing could be written: the caller waits for it.
    if (NelvoPlugin::NamedEvent* const event = NelvoPlugin::openEvent(m_eventName))
        NelvoPlugin::setEvent(event);
}
