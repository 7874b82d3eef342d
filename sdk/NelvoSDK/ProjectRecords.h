#pragma once

//! \file
//! \brief Records of scene projects and organisation units: plain values, copy them freely.
//!
//! A string is empty if its field is missing in the service's reply. Wide strings are UTF-16 on Windows and
//! UTF-32 elsewhere, as QString::toStdWString creates them.

#include <list>
#include <map>
#include <string>

namespace NelvoSDK {

//! \brief One scene project of the enterprise, with its geographic setting.
struct ProjectNode {
    //! False in every record that the plug-in creates; the plug-in never reads it.
    bool reservedFlag = false;
    //! Name for the user.
    std::wstring name;
    //! Id in the editor service.
    std::wstring id;
    //! Position as decimal text with six significant digits, in the units of `proj4`.
    std::wstring x;
    //! Position, in the form of `x`.
    std::wstring y;
    //! False in every record that the plug-in creates.
    bool serverFlag = false;
    //! Code of the project in the service. The plug-in does not interpret it.
    std::wstring code;
    //! Name of the base map.
    std::wstring basemap;
    //! Coordinate definition in PROJ.4 notation. The plug-in does not interpret it.
    std::wstring proj4;
    //! "deptId" and "deptName": the organisation unit that owns the project.
    std::map<std::wstring, std::wstring> attrs;
};

//! \brief A scene project by id and name.
struct ProjectRef {
    //! Id in the editor service. The host chooses the id of a project that the service does not have yet.
    std::wstring id;
    //! Name for the user.
    std::wstring name;
    //! The host sets "deptId" and "deptName" for AddLocalProject. GetProjectInfo sets "epId" and "epName".
    std::map<std::wstring, std::wstring> attrs;
};

//! \brief A node of the enterprise's organisation tree, with its sub-units.
struct OrgTreeNode {
    //! Id in the editor service. A project's "deptId" is the id of a unit.
    std::wstring id;
    //! Name for the user.
    std::wstring name;
    //! Whether a project may belong to this unit.
    bool canSelect = false;
    //! The sub-units, in the service's order.
    std::list<OrgTreeNode> children;
};

} // namespace NelvoSDK
