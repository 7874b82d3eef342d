#pragma once

//! \file
//! \brief Plain values, which may be copied freely. A text that the service leaves out is empty. Wide strings
//! hold what QString::toStdWString makes of it: UTF-16 on Windows, UTF-32 elsewhere.

#include <list>
#include <map>
#include <string>

namespace NelvoSDK {

//! \brief One scene project of the enterprise, with its geographic setting.
struct ProjectNode {
    //! False in every record that the plug-in builds; the plug-in never reads it.
    bool reservedFlag = false;
    //! Name as the user reads it.
    std::wstring name;
    //! Id in the editor service.
    std::wstring id;
    //! Position as decimal text with six significant digits, in the units of `proj4`.
    std::wstring x;
    //! As `x`.
    std::wstring y;
    //! False in every record that the plug-in builds.
    bool serverFlag = false;
    //! Code of the project in the service; opaque to the plug-in.
    std::wstring code;
    //! Name of the base map; empty when the service gives none.
    std::wstring basemap;
    //! Coordinate definition in PROJ.4 notation; opaque to the plug-in.
    std::wstring proj4;
    //! "deptId" and "deptName": the organisation unit that owns the project.
    std::map<std::wstring, std::wstring> attrs;
};

//! \brief A scene project by id and name.
struct ProjectRef {
    //! Id in the editor service, or the host's own for a project that is not there yet.
    std::wstring id;
    //! Name as the user reads it.
    std::wstring name;
    //! On the way into the plug-in "deptId" and "deptName", on the way out "epId" and "epName".
    std::map<std::wstring, std::wstring> attrs;
};

//! \brief A node of the enterprise's organisation tree, with its sub-units.
struct OrgTreeNode {
    //! Id in the editor service; a project's "deptId" is one of these.
    std::wstring id;
    //! Name as the user reads it.
    std::wstring name;
    //! Whether a project may belong to this unit.
    bool canSelect = false;
    //! The sub-units, in the service's order.
    std::list<OrgTreeNode> children;
};

} // namespace NelvoSDK
