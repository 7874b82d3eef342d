#include "probe/terminal.h"

#include <windows.h>

namespace NelvoDevkit {

namespace {

HANDLE input()
{
    return GetStdHandle(STD_INPUT_HANDLE);
}

void setEcho(bool on)
{
    DWORD mode = 0;
    if (GetConsoleMode(input(), &mode) != 0)
        SetConsoleMode(input(), on ? mode | ENABLE_ECHO_INPUT : mode & ~DWORD(ENABLE_ECHO_INPUT));
}

} // namespace

HiddenInput::HiddenInput() : m_isTerminal(GetFileType(input()) == FILE_TYPE_CHAR)
{
    if (m_isTerminal)
        setEcho(false);
}

HiddenInput::~HiddenInput()
{
    if (m_isTerminal)
        setEcho(true);
}

} // namespace NelvoDevkit
