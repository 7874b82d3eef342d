#include "checks.h"
#include "childprocess.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <thread>

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using WindowsTest::Checks;
using WindowsTest::ChildProcess;
using WindowsTest::Patience;

// Tests the batch file of the update: prepares installations, in which cmd runs the batch file. The arguments
// are the batch file, a test double of the editor, and a copy program that does not end.

namespace {

fs::path batchFile;
fs::path editorProgram;
fs::path stuckCopyProgram;

const fs::path Unpacked = "NelvoUnCompress";
const std::initializer_list<const char*> Protected{"NelvoUpdateLog.txt", "updateConfig.json",
                                                   "NelvoUpdateState.dat"};

//! Waits until the file exists and can be read: the program that renamed it may still have it open.
bool appears(const fs::path& file)
{
    const auto end = steady_clock::now() + Patience;
    while (!std::ifstream(file).is_open()) {
        if (steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(milliseconds(10));
    }
    return true;
}

//! \brief An application directory that the update has prepared, with an unpacked package and the batch file.
class Installation
{
public:
    explicit Installation(const std::wstring& name = L"app")
        : m_root(fs::temp_directory_path() / ("nelvo-cover-" + std::to_string(GetCurrentProcessId())))
        , m_home(m_root / name)
    {
        fs::remove_all(m_root);
        fs::create_directories(m_home);
        fs::copy_file(editorProgram, m_home / "NelvoEditor.exe");
        putBatchFile();
    }
    ~Installation()
    {
        std::error_code ignored;
        fs::remove_all(m_root, ignored);
    }
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    fs::path path(const fs::path& file) const { return m_home / file; }
    void putBatchFile() const { fs::copy_file(batchFile, path("cover.bat")); }
    void write(const fs::path& file, const std::string& content) const
    {
        fs::create_directories(path(file).parent_path());
        std::ofstream(path(file), std::ios::binary) << content;
    }
    bool has(const fs::path& file) const { return fs::exists(path(file)); }
    std::string content(const fs::path& file) const
    {
        std::ifstream stream(path(file), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    //! Starts the batch file like the update: by its path and with another current directory.
    std::unique_ptr<ChildProcess> startBatchFile() const
    {
        return std::make_unique<ChildProcess>(path("cover.bat").wstring(), fs::current_path());
    }
    //! Runs the batch file to its end and waits until it has started the editor.
    void cover(Checks& checks) const
    {
        fs::remove(path("started.txt"));
        const auto batch = startBatchFile();
        checks.that(batch->ends(Patience), "the batch file ends");
        checks.that(appears(path("started.txt")), "the editor is started again");
        checks.that(content("started.txt") == "0", "the editor gets no arguments");
        checks.that(!has("cover.bat"), "the batch file has removed itself");
    }

    //! Writes files of the installation and of the package. Some exist in both.
    void fill() const
    {
        for (const char* const file : {"first.txt", "second.txt", "third.txt", "sub/deep/file.txt"}) {
            write(file, "old");
            write(Unpacked / file, "new");
        }
        for (const char* const file : Protected) {
            write(file, "mine");
            write(Unpacked / file, "theirs");
        }
        write("kept.txt", "old");
        write(Unpacked / "added.txt", "new");
    }
    void isReplaced(Checks& checks) const
    {
        for (const char* const file :
             {"first.txt", "second.txt", "third.txt", "sub/deep/file.txt", "added.txt"})
            checks.that(content(file) == "new", std::string(file) + " is from the package");
        checks.that(content("kept.txt") == "old", "a file that the package lacks is kept");
        protectedFilesAreMine(checks);
        checks.that(!has(Unpacked), "the unpack directory is gone");
    }
    void protectedFilesAreMine(Checks& checks) const
    {
        for (const char* const file : Protected)
            checks.that(content(file) == "mine", std::string(file) + " is from the installation");
    }

private:
    fs::path m_root;
    fs::path m_home;
};

void everythingButTheProtectedFilesIsReplaced(Checks& checks)
{
    checks.begin("a package");
    const Installation host;
    host.fill();
    host.cover(checks);
    host.isReplaced(checks);
}

void packageWithoutProtectedFiles(Checks& checks)
{
    checks.begin("a package without the protected files");
    const Installation host;
    host.fill();
    for (const char* const file : Protected)
        fs::remove(host.path(Unpacked / file));
    host.cover(checks);
    host.isReplaced(checks);
}

void protectedNamesBelowAreReplaced(Checks& checks)
{
    checks.begin("a protected name in a subdirectory");
    const Installation host;
    host.fill();
    host.write("sub/updateConfig.json", "old");
    host.write(Unpacked / "sub/updateConfig.json", "new");
    host.cover(checks);
    checks.that(host.content("sub/updateConfig.json") == "new", "the file is from the package");
    host.isReplaced(checks);
}

void directoriesAndNames(Checks& checks)
{
    checks.begin("empty directories and names in other scripts");
    const Installation host;
    host.fill();
    fs::create_directories(host.path(Unpacked / "sub/empty"));
    host.write(Unpacked / L"模型" / L"größe.txt", "new");
    host.write(Unpacked / "with a blank" / "a b.txt", "new");
    host.cover(checks);
    checks.that(host.has("sub/empty"), "empty directories are copied");
    checks.that(host.content(fs::path(L"模型") / L"größe.txt") == "new", "names in other scripts are copied");
    checks.that(host.content("with a blank/a b.txt") == "new", "names with a blank are copied");
    host.isReplaced(checks);
}

void directoryInAnotherScript(Checks& checks)
{
    checks.begin("an installation whose name is in another script");
    const Installation host(L"编辑器");
    host.fill();
    host.cover(checks);
    host.isReplaced(checks);
}

void theNewEditorIsStarted(Checks& checks)
{
    checks.begin("a package with the editor");
    const Installation host;
    host.fill();
    fs::copy_file(host.path("NelvoEditor.exe"), host.path(Unpacked / "NelvoEditor.exe"));
    host.write("NelvoEditor.exe", "the old one does not run");
    host.cover(checks);
    host.isReplaced(checks);
}

void emptyPackage(Checks& checks)
{
    checks.begin("an empty package");
    const Installation host;
    host.fill();
    fs::remove_all(host.path(Unpacked));
    fs::create_directories(host.path(Unpacked));
    host.cover(checks);
    checks.that(host.content("first.txt") == "old", "the installation is unchanged");
    host.protectedFilesAreMine(checks);
    checks.that(!host.has(Unpacked), "the unpack directory is gone");
}

//! A host that is still running has files open.
void lockedFileLeavesAMixture(Checks& checks)
{
    checks.begin("a file that is still in use");
    const Installation host;
    host.fill();
    const HANDLE lock = CreateFileW(host.path("second.txt").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    checks.that(lock != INVALID_HANDLE_VALUE, "the file is locked");
    host.cover(checks);
    CloseHandle(lock);
    checks.that(host.content("second.txt") == "old", "the locked file is unchanged");
    checks.that(host.content("first.txt") == "new", "the file before it is from the package");
    checks.that(host.content("third.txt") == "old", "the copy stops at the locked file");
    host.protectedFilesAreMine(checks);
    checks.that(!host.has(Unpacked), "the unpack directory is still removed");
}

//! A second run completes the update: the batch file removes the package only after the copy.
void killedWhileItCopies(Checks& checks)
{
    checks.begin("killed during the copy");
    const Installation host;
    host.fill();
    fs::copy_file(stuckCopyProgram, host.path("xcopy.exe"));
    const auto batch = host.startBatchFile();
    checks.that(appears(host.path("stuck.txt")), "the copy has begun");
    batch->kill();
    fs::remove(host.path("xcopy.exe"));

    checks.that(host.content("first.txt") == "new", "the first file is from the package");
    checks.that(host.content("second.txt") == "ne", "the second file is incomplete");
    checks.that(host.content("third.txt") == "old", "the third file is unchanged");
    host.protectedFilesAreMine(checks);
    for (const char* const file : Protected)
        checks.that(!host.has(Unpacked / file), std::string("the package no longer contains ") + file);
    checks.that(host.content(Unpacked / "second.txt") == "new", "the package is complete");
    checks.that(host.has("cover.bat"), "the batch file is still there");
    checks.that(!host.has("started.txt"), "no editor has been started");

    checks.begin("killed during the copy, and run again");
    host.cover(checks);
    host.isReplaced(checks);
}

void killedWhileItRemoves(Checks& checks)
{
    checks.begin("killed while it removes the unpack directory, and run again");
    const Installation host;
    host.fill();
    host.cover(checks);
    // The state after such an end: all files have been copied, and the package has been partly removed.
    host.putBatchFile();
    host.write(Unpacked / "third.txt", "new");
    host.cover(checks);
    host.isReplaced(checks);
}

void runOnceTooOften(Checks& checks)
{
    checks.begin("run again after a complete update");
    const Installation host;
    host.fill();
    host.cover(checks);
    host.putBatchFile();
    host.cover(checks);
    host.isReplaced(checks);
}

//! Prints how long `choice` waits, without a check. On Windows it waits for two seconds, the time that the
//! batch file gives the host to end.
void sayHowLongChoiceWaits()
{
    const auto begin = steady_clock::now();
    const ChildProcess choice(L"cmd /c choice /t 2 /d y /n >nul", fs::current_path());
    const bool ended = choice.ends(Patience);
    const auto waited = std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin);
    std::cout << "\"choice /t 2\", with which the batch file gives the host time to end, "
              << (ended ? "has waited for " : "has not ended within ") << waited.count() << " ms here"
              << (ended && waited < milliseconds(1500) ? ": it does not wait, so the pause is not tested.\n"
                                                       : ".\n");
}

} // namespace

int wmain(int argc, wchar_t* argv[])
{
    if (argc != 4) {
        std::cerr << "usage: cover BATCH_FILE EDITOR STUCK_COPY\n";
        return 2;
    }
    batchFile = argv[1];
    editorProgram = argv[2];
    stuckCopyProgram = argv[3];
    Checks checks("cover");
    checks.run(everythingButTheProtectedFilesIsReplaced);
    checks.run(packageWithoutProtectedFiles);
    checks.run(protectedNamesBelowAreReplaced);
    checks.run(directoriesAndNames);
    checks.run(directoryInAnotherScript);
    checks.run(theNewEditorIsStarted);
    checks.run(emptyPackage);
    checks.run(lockedFileLeavesAMixture);
    checks.run(killedWhileItCopies);
    checks.run(killedWhileItRemoves);
    checks.run(runOnceTooOften);
    sayHowLongChoiceWaits();
    return checks.end();
}
