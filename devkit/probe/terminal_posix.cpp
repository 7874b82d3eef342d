#include "probe/terminal.h"

#include <termios.h>
#include <unistd.h>

namespace NelvoDevkit {

namespace {

void setEcho(bool on)
{
    termios settings{};
    if (tcgetattr(STDIN_FILENO, &settings) != 0)
        return;
    if (on)
        settings.c_lflag |= ECHO;
    else
        settings.c_lflag &= ~tcflag_t(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &settings);
}

} // namespace

HiddenInput::HiddenInput() : m_isTerminal(isatty(STDIN_FILENO) != 0)
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
