#pragma once

#include <QString>

namespace NelvoDevkit {

//! \brief The password from the standard input: its first line, which a terminal asks for and does not show.
QString readPassword();

} // namespace NelvoDevkit
