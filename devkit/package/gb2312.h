#pragma once

class QString;

namespace NelvoDevkit {

//! Whether every character of the text is in ASCII or GB2312. Qt's codec with that name cannot check this: it
//! encodes the larger GBK.
bool isGb2312(const QString& text);

} // namespace NelvoDevkit
