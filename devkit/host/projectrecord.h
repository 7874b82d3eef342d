#pragma once

#include <NelvoSDK/ProjectRecords.h>

#include <QVariantList>

namespace NelvoDevkit {

//! An attribute of the record; empty if it has none of that key.
QString attribute(const NelvoSDK::ProjectNode& project, const wchar_t* key);

//! The project as a reference, attributes included.
NelvoSDK::ProjectRef toRef(const NelvoSDK::ProjectNode& project);

//! A project as rows for the window: a list of maps with "label" and "value". What the record leaves empty
//! has no row. `enterprise` is the one that the plug-in knows the project by, or empty.
QVariantList describeProject(const NelvoSDK::ProjectNode& project, const QString& enterprise);

} // namespace NelvoDevkit
