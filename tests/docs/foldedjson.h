#pragma once

#include <QJsonValue>
#include <QString>

namespace Docs {

//! JSON for readers: what fits on a line stands on one, and of a list with more than five rows the first two
//! stand there, followed by "…".
QString foldedJson(const QJsonValue& value);

} // namespace Docs
