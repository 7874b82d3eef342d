#pragma once

#include <QString>

namespace NelvoDevkit {

//! \brief Fills the database from which PDS projects are read, if the host has to do so.
//!
//! The stand-in of the closed library reads "models.json" in `directory`; the real library has its own
//! models. On failure returns false and sets `error` to the reason.
bool loadModelDatabase(const QString& directory, QString* error);

} // namespace NelvoDevkit
