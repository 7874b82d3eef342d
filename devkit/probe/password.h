#pragma once

#include <QString>

namespace NelvoDevkit {

//! \brief Reads the first line of the standard input. A terminal shows a prompt and hides the input.
QString readPassword();

} // namespace NelvoDevkit
