#pragma once

#include <QString>

namespace NelvoDevkit {

//! \brief Fills the database that imported models are read from, as far as that is the host's business.
//!
//! The stand-in of the closed library reads "models.json" in `directory`; the real one has its models
//! already. On failure returns false and tells why in `error`.
bool loadModelDatabase(const QString& directory, QString* error);

} // namespace NelvoDevkit
