#pragma once

#include <VLSmartDB/IVLDBDirector.h>

#include <string>

namespace NelvoPlugin {

//! \file
//! \brief Ids of the model database from and to text. Any thread.

//! The id that `text` names: a GUID id if it reads as a GUID of 36 characters, else a text id. An empty
//! text names no object ("none").
//!
//! Any character separates the groups of a GUID, and each group may have what std::wcstoul lets pass.
VLSmartDB::VLDBId toVldbId(const std::wstring& text);

//! The text of an id: a GUID in lower case, or the text id itself; empty for no object.
std::wstring vldbIdText(const VLSmartDB::VLDBId& id);

} // namespace NelvoPlugin
