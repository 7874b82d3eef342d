#include "checks.h"
#include "childprocess.h"
#include "launch/callerhandshake.h"

#include "login/logincmdlinemgr.h"
#include "platform/handshake.h"

#include <array>
#include <map>
#include <memory>

using NelvoDevkit::CallerHandshake;
using WindowsTest::Checks;
using WindowsTest::ChildProcess;
using WindowsTest::Patience;

// Tests the handshake between a calling program and the host that it starts. This program is both: with three
// arguments it is the child process, which notifies the caller.

namespace {

constexpr std::chrono::milliseconds Now{0};
const std::string Unwritten(CallerHandshake::BlockSize, 'x');

//! Notifies the caller with the plug-in's code. Returns 0, plus 1 if the block cannot be opened, plus 2 if
//! the event cannot be opened.
int tell(const std::wstring& event, const std::wstring& mapping)
{
    CLoginCmdLineMgr manager;
    manager.m_eventName = event;
    manager.m_mappingName = mapping;
    manager.notifyCaller();
    return (NelvoPlugin::openSharedMemory(mapping) ? 0 : 1) + (NelvoPlugin::openEvent(event) ? 0 : 2);
}

//! A name that only this process uses.
std::wstring unique(const std::wstring& name)
{
    static int count = 0;
    return L"nelvo-" + std::to_wstring(GetCurrentProcessId()) + L'-' + std::to_wstring(++count) + name;
}

std::wstring quoted(const std::wstring& text)
{
    return L'"' + text + L'"';
}

std::wstring ownPath()
{
    std::array<wchar_t, 1024> path{};
    GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return path.data();
}

//! Starts the child process.
std::unique_ptr<ChildProcess> startTeller(const std::wstring& event, const std::wstring& mapping)
{
    return std::make_unique<ChildProcess>(
        quoted(ownPath()) + L" tell " + quoted(event) + L' ' + quoted(mapping), L".");
}

//! A calling program. Its block is filled with `x`, so a test sees which bytes the notification replaces.
class Caller
{
public:
    explicit Caller(const std::wstring& name = {})
        : m_event(unique(name + L" event"))
        , m_mapping(unique(name + L" mapping"))
        , m_handshake(m_event, m_mapping)
    {
        std::array<char, CallerHandshake::BlockSize> content{};
        Unwritten.copy(content.data(), content.size());
        m_handshake.fillBlock(content);
    }

    const std::wstring& event() const { return m_event; }
    const std::wstring& mapping() const { return m_mapping; }
    bool isWoken(std::chrono::milliseconds patience) const { return m_handshake.wait(patience); }
    std::string block() const
    {
        const auto bytes = m_handshake.block();
        return {bytes.begin(), bytes.end()};
    }
    //! True if the block begins with "1" and a NUL and is otherwise unchanged.
    bool isTold() const { return block() == std::string("1\0xxxxxx", CallerHandshake::BlockSize); }

private:
    std::wstring m_event;
    std::wstring m_mapping;
    CallerHandshake m_handshake;
};

bool endsWith(const ChildProcess& teller, DWORD status)
{
    return teller.ends(Patience) && teller.status() == status;
}

//! The text is written before the event is set, so the woken caller reads it.
void wordIsWrittenBeforeTheEvent(Checks& checks)
{
    checks.begin("the text is written before the event is set");
    for (int round = 0; round < 20; ++round) {
        const Caller caller;
        const auto teller = startTeller(caller.event(), caller.mapping());
        checks.that(caller.isWoken(Patience), "the caller is woken");
        checks.that(caller.isTold(), "the text is in the block, and the bytes after it are unchanged");
        checks.that(endsWith(*teller, 0), "the child process has opened both");
        checks.that(!caller.isWoken(Now), "the caller is woken once");
    }
}

void callerWithoutBlockIsWoken(Checks& checks)
{
    checks.begin("a missing block");
    const Caller caller;
    const auto teller = startTeller(caller.event(), unique(L"missing"));
    checks.that(caller.isWoken(Patience), "the caller is still woken");
    checks.that(caller.block() == Unwritten, "the block is unchanged");
    checks.that(endsWith(*teller, 1), "the child process has opened only the event");
}

void callerWithoutEventIsToldAndNotWoken(Checks& checks)
{
    checks.begin("a missing event");
    const Caller caller;
    const auto teller = startTeller(unique(L"missing"), caller.mapping());
    checks.that(endsWith(*teller, 2), "the child process has opened only the block");
    checks.that(caller.isTold(), "the text is in the block");
    checks.that(!caller.isWoken(Now), "the caller is not woken");
}

void withoutBothNothingHappens(Checks& checks)
{
    checks.begin("neither block nor event");
    const auto teller = startTeller(unique(L"missing"), unique(L"missing"));
    checks.that(endsWith(*teller, 3), "the child process has opened neither and ends normally");
}

void withoutANameNothingIsTold(Checks& checks)
{
    checks.begin("an empty name");
    const Caller caller;
    checks.that(startTeller({}, caller.mapping())->ends(Patience), "the child process ends without an event");
    checks.that(startTeller(caller.event(), {})->ends(Patience), "the child process ends without a block");
    checks.that(caller.block() == Unwritten, "the block is unchanged");
    checks.that(!caller.isWoken(Now), "the caller is not woken");
}

void anyCharactersMakeAName(Checks& checks)
{
    const std::map<std::string, std::wstring> names{
        {"Chinese", L"登录事件"},      {"Latin", L"größe-é"}, {"beyond the first plane", L"\U0001F3D7"},
        {"space", L"a name"},          {"slash", L"a/b"},     {"percent", L"100%"},
        {"signs", L"!#$&'()*+,:;<=>?"}};
    for (const auto& [title, name] : names) {
        checks.begin("a name with " + title);
        const Caller caller(name);
        const auto teller = startTeller(caller.event(), caller.mapping());
        checks.that(caller.isWoken(Patience), "the caller is woken");
        checks.that(caller.isTold(), "the text is in the block");
        checks.that(endsWith(*teller, 0), "the child process has opened both");
    }
}

void namesAreUsedAsGiven(Checks& checks)
{
    checks.begin("another name");
    const Caller caller(L"Näme");
    std::wstring other = caller.event();
    other.replace(other.find(L"Näme"), 4, L"näme");
    checks.that(NelvoPlugin::openEvent(caller.event()) != nullptr, "the event opens by its name");
    checks.that(NelvoPlugin::openEvent(other) == nullptr,
                "the event does not open by its name in another case");
    checks.that(NelvoPlugin::openSharedMemory(caller.event()) == nullptr,
                "an event does not open as a block");
    checks.that(NelvoPlugin::openEvent(caller.mapping()) == nullptr, "a block does not open as an event");
}

//! If the calling program gives up, a host that has already opened the objects can still use them.
void openObjectsOutliveTheirCaller(Checks& checks)
{
    checks.begin("a caller that has ended");
    NelvoPlugin::SharedMemory* memory = nullptr;
    NelvoPlugin::NamedEvent* event = nullptr;
    {
        const Caller caller;
        memory = NelvoPlugin::openSharedMemory(caller.mapping());
        event = NelvoPlugin::openEvent(caller.event());
    }
    char* const block = NelvoPlugin::mapSharedMemory(memory);
    checks.that(block != nullptr && std::string(block, Unwritten.size()) == Unwritten,
                "the block still exists");
    NelvoPlugin::setEvent(event);
}

} // namespace

int wmain(int argc, wchar_t* argv[])
{
    if (argc == 4)
        return tell(argv[2], argv[3]);
    Checks checks("handshake");
    checks.run(wordIsWrittenBeforeTheEvent);
    checks.run(callerWithoutBlockIsWoken);
    checks.run(callerWithoutEventIsToldAndNotWoken);
    checks.run(withoutBothNothingHappens);
    checks.run(withoutANameNothingIsTold);
    checks.run(anyCharactersMakeAName);
    checks.run(namesAreUsedAsGiven);
    checks.run(openObjectsOutliveTheirCaller);
    return checks.end();
}
