#include "updater/bzip2entry.h"

#include <quazip/quazipfile.h>

std::unique_ptr<QIODevice> bzip2Entry(QuaZip& zip)
{
    return std::make_unique<QuaZipFile>(&zip);
}
