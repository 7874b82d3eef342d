#include "host/modeldatabase.h"

namespace NelvoDevkit {

bool loadModelDatabase(const QString& /*directory*/, QString* /*error*/)
{
    return true;
}

} // namespace NelvoDevkit
