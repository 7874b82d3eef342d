#pragma once

class QString;

namespace NelvoDevkit {

//! Whether every character of the text is in ASCII or GB2312. Qt's codec of that name doesn't tell: it knows
//! the larger GBK.
bool isGb2312(const QString& text);

} // namespace NelvoDevkit
