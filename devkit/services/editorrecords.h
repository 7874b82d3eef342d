#pragma once

#include <QString>

namespace NelvoDevkit {

//! \brief A scene project in the editor service.
struct SceneProject {
    QString id;
    QString name;
    QString deptId;
    QString deptName;
    QString code;
    QString basemap; //!< empty if the project has none
    QString proj4;
    double x = 0;
    double y = 0;
};

//! \brief A building model or a drawing of the editor service.
struct BimModel {
    QString guid;
    QString name;
    QString deptId;
    qint64 ppid = 0;
    qint64 profession = 0; //!< a number from 1 to 12; any other is unknown
    qint64 size = 0;
};

//! \brief The changes of the equipment bindings of a scene project.
struct EquipmentBindings {
    int deletes = 0;  //!< requests that deleted all bindings
    int batches = 0;  //!< requests that added bindings
    int elements = 0; //!< current number: added since the last deletion
};

} // namespace NelvoDevkit
