#pragma once

#include <VLSmartDB/DevkitDatabase.h>

namespace VLSmartDB {

//! The objects that stand in a JSON file: {"objects": [ … ]}, each with "id", "name" and "type", and with
//! "properties" and "children" where it has some. Throws a DatabaseError that tells what is wrong where.
std::vector<ObjectRecord> readSeedFile(const QString& fileName);

} // namespace VLSmartDB
