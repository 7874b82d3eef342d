#pragma once

#include <NelvoSDK/ProjectRecords.h>

#include <list>
#include <string>
#include <utility>

//! A unit of the organisation with that id and those children. Its name is "名" and the id.
inline NelvoSDK::OrgTreeNode node(const std::wstring& id, std::list<NelvoSDK::OrgTreeNode> children = {},
                                  bool canSelect = true)
{
    NelvoSDK::OrgTreeNode made;
    made.id = id;
    made.name = L"名" + id;
    made.canSelect = canSelect;
    made.children = std::move(children);
    return made;
}
