#pragma once

#include <QString>

namespace NelvoDevkit {

//! \brief A scene project as the editor service keeps it.
struct SceneProject {
    QString id;
    QString name;
    QString deptId;
    QString deptName;
    QString code;
    QString basemap; //!< empty for a project that has none
    QString proj4;
    double x = 0;
    double y = 0;
};

//! \brief A building model, or a drawing, that the editor service relates to the scene projects.
struct BimModel {
    QString guid;
    QString name;
    QString deptId;
    qint64 ppid = 0;
    qint64 profession = 0; //!< a number from 1 to 12; any other is of no known kind
    qint64 size = 0;
};

//! \brief What was done to the equipment bindings of a scene project.
struct EquipmentBindings {
    int deletes = 0;  //!< calls that deleted them all
    int batches = 0;  //!< calls that added some
    int elements = 0; //!< those there are now: added since the last delete
};

} // namespace NelvoDevkit
