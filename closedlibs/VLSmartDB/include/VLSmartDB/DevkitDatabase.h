#pragma once

#include <VLSmartDB/IVLDBDirector.h>

#include <QMap>
#include <QString>

#include <vector>

//! Additions of the stand-in to the real library: functions that fill its database, which is in memory and
//! empty at first. GUI thread only.
namespace VLSmartDB {

//! \brief An object for the database, with all its descendants.
struct ObjectRecord {
    QString id; //!< a GUID in the usual notation, or any other text except "none"
    QString name;
    QString type;
    QMap<QString, QString> properties;
    std::vector<ObjectRecord> children;
};

//! Replaces the content of the database by the objects of a JSON file, none of them loaded yet. On failure
//! changes nothing and returns false; `error`, which may be null, receives the file and the reason.
VLSMARTDB_EXPORT bool loadDatabase(const QString& file, QString* error = nullptr);
//! Adds the object at the top level, not loaded yet. On failure, such as an id that exists already, adds
//! nothing.
VLSMARTDB_EXPORT bool addObject(const ObjectRecord& object, QString* error = nullptr);
//! Empties the database. Pointers to its objects are valid until then, or until loadDatabase.
VLSMARTDB_EXPORT void clearDatabase();

} // namespace VLSmartDB
