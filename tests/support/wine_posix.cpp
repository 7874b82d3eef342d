#include "tests/support/wine.h"

namespace TestSupport {

bool isUnderWine()
{
    return false;
}

} // namespace TestSupport
