#pragma once

#include <QString>

namespace NelvoDevkit {

//! \brief What a text that the plug-in logs or returns means, for those who deploy the services.
//!
//! Empty for a text that is not known.
QString explain(const QString& text);

} // namespace NelvoDevkit
