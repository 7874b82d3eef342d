#pragma once

#include <VLSmartDB/IVLDBDirector.h>

#include <string>

namespace NelvoPlugin {

//! \file
//! \brief Converts ids of the model database from and to text. Any thread.

//! The id in `text`: a GUID id if the text reads as a GUID of 36 characters, otherwise a text id. An empty
//! text is the id of no object ("none").
//!
//! Any character separates the groups of a GUID, and each group may contain what std::wcstoul accepts.
VLSmartDB::VLDBId toVldbId(const std::wstring& text);

//! The text of an id: a GUID in lower case, or the text id itself; empty for no object.
std::wstring vldbIdText(const VLSmartDB::VLDBId& id);

} // namespace NelvoPlugin
