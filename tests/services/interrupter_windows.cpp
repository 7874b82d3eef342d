#include <windows.h>

#include <cstdlib>

//! Sends Ctrl+C to the process with the given id, through its console. A process has only one console at a
//! time, so the test cannot do this itself.
int main(int argc, char* argv[])
{
    const DWORD process = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    FreeConsole();
    if (AttachConsole(process) == FALSE)
        return EXIT_FAILURE;
    SetConsoleCtrlHandler(nullptr, TRUE); // this process receives it too
    return GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != FALSE ? EXIT_SUCCESS : EXIT_FAILURE;
}
