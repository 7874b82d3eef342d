#pragma once

#include <string>

namespace NelvoPlugin {

//! A block of shared memory of another process, open in this one.
struct SharedMemory;
//! An event of another process, open in this one.
struct NamedEvent;

// What the system has to do so that this process can tell something to the one that started it. That one
// has created a block of shared memory and an event, and gave them names. On POSIX systems the event is a
// semaphore, and the object of a given name is "/" followed by the name as UTF-8, in which each byte but
// ASCII letters, digits, "-", ".", "_" and "~" is percent-encoded in upper-case hexadecimal.
//
// What is opened here stays open, and mapped, until the process ends, which is intended. On POSIX systems the
// creator of the objects can remove their names meanwhile; on Windows the names live on until this process
// ends.

//! Opens a block for writing; null if there is none of that name, or none that may be written.
SharedMemory* openSharedMemory(const std::wstring& name);

//! The first byte of the whole block, writable; null if it can't be mapped.
char* mapSharedMemory(SharedMemory* memory);

//! Opens an event; null if there is none of that name, or none that may be set.
NamedEvent* openEvent(const std::wstring& name);

//! Wakes up whoever waits for the event, also if that one only begins to wait afterwards.
void setEvent(NamedEvent* event);

} // namespace NelvoPlugin
