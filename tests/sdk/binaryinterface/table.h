#pragma once

#include "tests/sdk/binaryinterface/rows.h"

namespace BinaryInterface {

//! Returns the differences between the public headers, as this compiler sees them, and the table.
Problems problemsWithTable();

} // namespace BinaryInterface
