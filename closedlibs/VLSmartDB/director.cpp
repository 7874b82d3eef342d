#include "director.h"

namespace VLSmartDB {

Director& Director::instance()
{
    static Director director;
    return director;
}

IVLDBDirector* GetIDBDirector()
{
    return &Director::instance();
}

} // namespace VLSmartDB
