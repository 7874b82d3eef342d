#include <windows.h>

#include <cstdlib>

//! Sends Ctrl+C to the process of the given id, by way of its console. A process has one console at a time,
//! so this is no matter for the test itself.
int main(int argc, char* argv[])
{
    const DWORD process = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    FreeConsole();
    if (AttachConsole(process) == FALSE)
        return EXIT_FAILURE;
    SetConsoleCtrlHandler(nullptr, TRUE); // it comes here as well
    return GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != FALSE ? EXIT_SUCCESS : EXIT_FAILURE;
}
