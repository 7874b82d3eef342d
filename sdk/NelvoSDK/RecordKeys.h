#pragma once

//! \brief Keys of the maps in the public records: LoginSession::extra, ProjectNode::attrs, ProjectRef::attrs.
namespace NelvoSDK::RecordKeys {

//! Id of the organisation unit that owns a project.
inline constexpr const wchar_t* DeptId = L"deptId";
//! Name of the organisation unit that owns a project.
inline constexpr const wchar_t* DeptName = L"deptName";
//! Id of the enterprise, as decimal text.
inline constexpr const wchar_t* EpId = L"epId";
//! Name of the enterprise.
inline constexpr const wchar_t* EpName = L"epName";

} // namespace NelvoSDK::RecordKeys
