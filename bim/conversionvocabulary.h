#pragma once

#include <QString>

#include <string>

//! \file
//! \brief Names for the model conversion that the host and the plug-in share. The value of each is its
//!   identifier. The plug-in itself uses the last one only.

namespace NelvoPlugin {

// NOLINTBEGIN(readability-identifier-naming): the host uses this spelling.
extern const QString BVConverter;
extern const QString convertState;
extern const QString convertPds;
extern const QString convertVlg;
extern const QString convertDwg;
extern const QString convertFBX;
extern const QString dwgFile;
extern const QString fbxFile;
extern const QString pdsFile;
extern const QString gltfFile;
extern const QString levelModel;
extern const QString levelPerformanceFirst;
extern const QString outlineModel;
extern const QString bimGuid;
extern const QString compGuid;
extern const QString asComp;
extern const QString uid;
//! Key of the property with the source from which the host has imported an object.
extern const std::wstring editor_import_source_type;
// NOLINTEND(readability-identifier-naming)

} // namespace NelvoPlugin
