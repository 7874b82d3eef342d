#include "probe/password.h"

#include "probe/terminal.h"

#include <iostream>
#include <string>

namespace NelvoDevkit {

QString readPassword()
{
    const HiddenInput input;
    if (input.isTerminal())
        std::cerr << "Password: " << std::flush;
    std::string line;
    std::getline(std::cin, line);
    if (input.isTerminal())
        std::cerr << std::endl;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return QString::fromLocal8Bit(line.c_str());
}

} // namespace NelvoDevkit
