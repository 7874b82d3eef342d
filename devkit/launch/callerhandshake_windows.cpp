#include "launch/callerhandshake.h"

#include <system_error>

#include <windows.h>

namespace NelvoDevkit {

namespace {

[[noreturn]] void fail(const char* what, DWORD error)
{
    throw std::system_error(static_cast<int>(error), std::system_category(), what);
}

//! A handle of an object that this process has created.
class Created
{
public:
    //! Throws std::system_error if another process had created the object before.
    Created(const char* what, HANDLE handle) : m_handle(handle)
    {
        const DWORD error = GetLastError();
        if (m_handle != nullptr && error != ERROR_ALREADY_EXISTS)
            return;
        if (m_handle != nullptr)
            CloseHandle(m_handle);
        fail(what, error);
    }
    ~Created() { CloseHandle(m_handle); }
    Created(const Created&) = delete;
    Created& operator=(const Created&) = delete;

    HANDLE handle() const { return m_handle; }

private:
    HANDLE m_handle;
};

class Block
{
public:
    explicit Block(const std::wstring& name)
        : m_mapping("cannot create the shared memory",
                    CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                       CallerHandshake::BlockSize, name.c_str()))
        , m_bytes(static_cast<char*>(MapViewOfFile(m_mapping.handle(), FILE_MAP_WRITE, 0, 0, 0)))
    {
        if (m_bytes == nullptr)
            fail("cannot map the shared memory", GetLastError());
    }
    ~Block() { UnmapViewOfFile(m_bytes); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    char* bytes() const { return m_bytes; }

private:
    Created m_mapping;
    char* m_bytes;
};

class Event
{
public:
    explicit Event(const std::wstring& name)
        : m_event("cannot create the event", CreateEventW(nullptr, FALSE, FALSE, name.c_str()))
    {}

    bool wait(std::chrono::milliseconds patience) const
    {
        return WaitForSingleObject(m_event.handle(), static_cast<DWORD>(patience.count())) == WAIT_OBJECT_0;
    }

private:
    Created m_event;
};

} // namespace

struct CallerHandshake::Objects {
    Block block;
    Event event;
};

CallerHandshake::CallerHandshake(const std::wstring& eventName, const std::wstring& blockName)
    : m_objects(new Objects{Block(blockName), Event(eventName)}), m_block(m_objects->block.bytes())
{}

CallerHandshake::~CallerHandshake() = default;

bool CallerHandshake::wait(std::chrono::milliseconds patience) const
{
    return m_objects->event.wait(patience);
}

} // namespace NelvoDevkit
