#include "childprocess.h"

#include <system_error>

namespace WindowsTest {

namespace {

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

//! The NUL device: provides no input and drops all output.
HANDLE nowhere()
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    static const HANDLE handle =
        CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                    OPEN_EXISTING, 0, nullptr);
    return handle;
}

} // namespace

ChildProcess::ChildProcess(std::wstring commandLine, const std::filesystem::path& directory)
    : m_job(CreateJobObjectW(nullptr, nullptr))
{
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = startup.hStdOutput = startup.hStdError = nowhere();
    PROCESS_INFORMATION started{};
    // The process starts suspended, so it cannot start other processes before it is in the job.
    if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                       directory.c_str(), &startup, &started) == FALSE)
        fail("cannot start a process");
    m_process.reset(started.hProcess);
    const Handle thread(started.hThread);
    if (AssignProcessToJobObject(m_job.get(), m_process.get()) == FALSE) {
        TerminateProcess(m_process.get(), 1);
        fail("cannot put a process into a job");
    }
    ResumeThread(thread.get());
}

ChildProcess::~ChildProcess()
{
    kill();
}

bool ChildProcess::ends(std::chrono::milliseconds patience) const
{
    return WaitForSingleObject(m_process.get(), static_cast<DWORD>(patience.count())) == WAIT_OBJECT_0;
}

DWORD ChildProcess::status() const
{
    DWORD status = 0;
    GetExitCodeProcess(m_process.get(), &status);
    return status;
}

void ChildProcess::kill() const
{
    TerminateJobObject(m_job.get(), 1);
    WaitForSingleObject(m_process.get(), INFINITE);
}

} // namespace WindowsTest
