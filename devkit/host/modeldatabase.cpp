#include "host/modeldatabase.h"

#include <VLSmartDB/DevkitDatabase.h>

#include <QDir>

namespace NelvoDevkit {

bool loadModelDatabase(const QString& directory, QString* error)
{
    return VLSmartDB::loadDatabase(QDir(directory).filePath(QStringLiteral("models.json")), error);
}

} // namespace NelvoDevkit
