#pragma once

#include <QJsonValue>
#include <QString>

namespace Docs {

//! JSON for readers: a value that fits on one line is on one line. A list with more than five rows shows only
//! its first two rows and "…".
QString foldedJson(const QJsonValue& value);

} // namespace Docs
