#pragma once

#include "tests/sdk/binaryinterface/rows.h"

namespace BinaryInterface {

//! What the public headers, as this compiler understands them, have otherwise than the table.
Problems problemsWithTable();

} // namespace BinaryInterface
