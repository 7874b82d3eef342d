#include "tests/updater/batchfile.h"

#include <QFile>
#include <QFileInfo>
#include <QtTest>

#include <array>
#include <memory>

#include <windows.h>

#include <tlhelp32.h>

namespace {

//! `cmd` searches the directory of the batch file first, so it runs this program as xcopy.
const auto Copy = QStringLiteral("xcopy.exe");

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

Handle openProcess(DWORD id)
{
    return Handle(
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_TERMINATE | SYNCHRONIZE, FALSE, id));
}

QString programOf(const Handle& process)
{
    std::array<wchar_t, 1024> path{};
    auto size = static_cast<DWORD>(path.size());
    if (!QueryFullProcessImageNameW(process.get(), 0, path.data(), &size))
        return {};
    return QFileInfo(QString::fromWCharArray(path.data())).canonicalFilePath();
}

bool end(const Handle& process)
{
    return process && TerminateProcess(process.get(), 1) &&
           WaitForSingleObject(process.get(), Installation::Patience) == WAIT_OBJECT_0;
}

} // namespace

QByteArray BatchFile::trace() const
{
    return m_host.content(QStringLiteral("NelvoEditor.exe.started"));
}

bool BatchFile::hold() const
{
    return QFile::copy(QStringLiteral(STUCK_COPY), m_host.path(Copy));
}

bool BatchFile::isHeld() const
{
    return m_host.exists(QStringLiteral("stuck.txt"));
}

bool BatchFile::kill() const
{
    const QString copy = QFileInfo(m_host.path(Copy)).canonicalFilePath();
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (all == INVALID_HANDLE_VALUE)
        return false;
    const Handle snapshot(all);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(all, &entry); more; more = Process32NextW(all, &entry)) {
        const Handle process = openProcess(entry.th32ProcessID);
        // Ends the copy's parent first: the `cmd` would continue with the next line of the batch file.
        if (process && programOf(process) == copy)
            return end(openProcess(entry.th32ParentProcessID)) && end(process);
    }
    return false;
}

void BatchFile::letGo() const
{
    // Windows releases the program file some time after its process has ended.
    const QString copy = m_host.path(Copy);
    if (!QTest::qWaitFor([&copy] { return QFile::remove(copy); }, Installation::Patience))
        qFatal("cannot remove %s", qUtf8Printable(copy));
}
