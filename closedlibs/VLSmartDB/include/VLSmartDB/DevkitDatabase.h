#pragma once

#include <VLSmartDB/IVLDBDirector.h>

#include <QMap>
#include <QString>

#include <vector>

//! What the stand-in has beyond the real library: ways to fill its database, which lives in memory and is
//! empty at first. GUI thread only.
namespace VLSmartDB {

//! \brief An object to put into the database, with all that is below it.
struct ObjectRecord {
    QString id; //!< a GUID as usually written, or any other text but "none"
    QString name;
    QString type;
    QMap<QString, QString> properties;
    std::vector<ObjectRecord> children;
};

//! Replaces what the database holds by the objects of a JSON file, none of them loaded yet. On failure
//! changes nothing, returns false and tells in `error`, which may be null, what is wrong with which file.
VLSMARTDB_EXPORT bool loadDatabase(const QString& file, QString* error = nullptr);
//! Adds the object at the top, not loaded yet. On failure, which an id that is taken is, adds nothing.
VLSMARTDB_EXPORT bool addObject(const ObjectRecord& object, QString* error = nullptr);
//! Empties the database. Pointers to its objects are good until then, or until loadDatabase.
VLSMARTDB_EXPORT void clearDatabase();

} // namespace VLSmartDB
