#pragma once

#include <QJsonValue>
#include <QString>

namespace Docs {

//! JSON for readers: a value that fits on a line is on one line, and of a list with more than five rows only
//! the first two are shown, followed by "…".
QString foldedJson(const QJsonValue& value);

} // namespace Docs
