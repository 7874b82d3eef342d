#pragma once

#include "tests/sdk/binaryinterface/rows.h"

namespace BinaryInterface {

//! The differences between the public headers, as compiled here, and the table.
Problems problemsWithTable();

} // namespace BinaryInterface
