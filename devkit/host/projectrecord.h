#pragma once

#include <NelvoSDK/ProjectRecords.h>

#include <QVariantList>

namespace NelvoDevkit {

//! An attribute of the record; empty if the key is missing.
QString attribute(const NelvoSDK::ProjectNode& project, const wchar_t* key);

//! The project as a ProjectRef, including its attributes.
NelvoSDK::ProjectRef toRef(const NelvoSDK::ProjectNode& project);

//! A project as rows for the window: a list of maps with "label" and "value". Empty fields have no row.
//! `enterprise` is the project's enterprise according to the plug-in, or empty.
QVariantList describeProject(const NelvoSDK::ProjectNode& project, const QString& enterprise);

} // namespace NelvoDevkit
