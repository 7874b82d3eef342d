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

//! \brief A process and all processes that it starts. The destructor ends them.
class ChildProcess
{
public:
    //! Starts the process and drops its output. Throws std::system_error if this fails.
    ChildProcess(std::wstring commandLine, const std::filesystem::path& directory);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    //! Waits for the end of the process, not of those that it started. Returns false after a timeout.
    bool ends(std::chrono::milliseconds patience) const;
    //! The exit status of a process that has ended.
    DWORD status() const;
    //! Ends the process and all processes that it has started immediately.
    void kill() const;

private:
    Handle m_job;
    Handle m_process;
};

//! The maximum wait for an event that must happen.
constexpr std::chrono::minutes Patience{1};

} // namespace WindowsTest
