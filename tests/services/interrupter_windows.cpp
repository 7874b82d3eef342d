#include <windows.h>

#include <cstdlib>

//! Sends Ctrl+C to the process with the given id through its console. A separate program does this, because a
//! process has only one console and the test would lose its own.
int main(int argc, char* argv[])
{
    const DWORD process = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    FreeConsole();
    if (AttachConsole(process) == FALSE)
        return EXIT_FAILURE;
    SetConsoleCtrlHandler(nullptr, TRUE); // this process also receives Ctrl+C and must ignore it
    return GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != FALSE ? EXIT_SUCCESS : EXIT_FAILURE;
}
