#pragma once

//! \brief Keys of the maps in the public records: LoginSession::extra, ProjectNode::attrs, ProjectRef::attrs.
namespace NelvoSDK::RecordKeys {

inline constexpr const wchar_t* DeptId = L"deptId";
inline constexpr const wchar_t* DeptName = L"deptName";
inline constexpr const wchar_t* EpId = L"epId";
inline constexpr const wchar_t* EpName = L"epName";

} // namespace NelvoSDK::RecordKeys
