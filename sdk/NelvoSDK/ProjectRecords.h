#pragma once

#include <list>
#include <map>
#include <string>

namespace NelvoSDK {

//! \brief One scene project of the enterprise, with its geographic setting.
struct ProjectNode {
    //! False in every record that the plug-in builds; the plug-in never reads it.
    bool reservedFlag = false;
    std::wstring name;
    std::wstring id;
    //! Position as decimal text with six significant digits, in the units of `proj4`.
    std::wstring x;
    //! As `x`.
    std::wstring y;
    //! False in every record that the plug-in builds.
    bool serverFlag = false;
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
    std::wstring id;
    std::wstring name;
    //! On the way in "deptId" and "deptName", on the way out "epId" and "epName".
    std::map<std::wstring, std::wstring> attrs;
};

//! \brief A node of the enterprise's organisation tree, with its sub-units.
struct OrgTreeNode {
    std::wstring id;
    std::wstring name;
    //! Whether a project may belong to this unit.
    bool canSelect = false;
    std::list<OrgTreeNode> children;
};

} // namespace NelvoSDK
