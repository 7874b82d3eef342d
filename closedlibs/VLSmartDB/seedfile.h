#pragma once

#include <VLSmartDB/DevkitDatabase.h>

namespace VLSmartDB {

//! The objects of a JSON file: {"objects": [ … ]}, each with "id", "name" and "type", and optionally
//! "properties" and "children". Throws a DatabaseError with place and reason.
std::vector<ObjectRecord> readSeedFile(const QString& fileName);

} // namespace VLSmartDB
