#pragma once

#include <string>

namespace NelvoPlugin {

//! A block of shared memory of another process, open in this one.
struct SharedMemory;
//! An event of another process, open in this one.
struct NamedEvent;

// Notifies the process that started this one and passes it a result. The starting process has created a block
// of shared memory and an event, each with a name. On POSIX systems the event is a semaphore. There the name
// of each object is "/" followed by the name as UTF-8, in which every byte except ASCII letters, digits, "-",
// ".", "_" and "~" is percent-encoded with upper-case hexadecimal digits.
//
// An opened object stays open and mapped until this process ends. This is intentional. On POSIX systems the
// starting process can remove the names earlier; on Windows the names exist until this process ends.

//! Opens a block for writing. Returns null if no block has this name, or if it is not writable.
SharedMemory* openSharedMemory(const std::wstring& name);

//! Returns the first byte of the whole block, writable; null if the block cannot be mapped.
char* mapSharedMemory(SharedMemory* memory);

//! Opens an event. Returns null if no event has this name, or if it cannot be set.
NamedEvent* openEvent(const std::wstring& name);

//! Wakes the process that waits for the event. A process that begins to wait later returns at once.
void setEvent(NamedEvent* event);

} // namespace NelvoPlugin
