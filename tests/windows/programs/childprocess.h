#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include <windows.h>

namespace WindowsTest {

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

//! \brief A process with all that it starts; they end with this object at the latest.
class ChildProcess
{
public:
    //! Throws std::system_error if it can't be started. What it prints is discarded.
    ChildProcess(std::wstring commandLine, const std::filesystem::path& directory);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    //! Waits for the end of the process itself; false if it doesn't come in time.
    bool ends(std::chrono::milliseconds patience) const;
    //! The exit status of a process that has ended.
    DWORD status() const;
    //! Ends it and all that it has started, at once.
    void kill() const;

private:
    Handle m_job;
    Handle m_process;
};

//! How long a test waits for what has to come.
constexpr std::chrono::minutes Patience{1};

} // namespace WindowsTest
