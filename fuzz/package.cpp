#include "fuzz/support.h"
#include "updater/unzippackage.h"

#include <QDir>
#include <QFileInfo>

//! An update package. Names with parent directories are skipped: the unpacking would leave the directory.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray archive = Fuzz::bytesOf(data, size);
    if (archive.contains(".."))
        return 0;
    const QString directory = Fuzz::pathOf("unpacked");
    const bool success = unzipPackage(Fuzz::writeFile("package.zip", archive), directory);
    Fuzz::require(QFileInfo(directory).isDir() == success);
    return 0;
}
