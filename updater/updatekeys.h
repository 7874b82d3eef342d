#pragma once

#include <QString>

//! \brief Keys of the update service's reply, of the state file, and of the file of the installed version.
namespace UpdateKeys {

//! In the reply and in the state file.
inline const QString PackageVersion = QStringLiteral("pVersion");
inline const QString Remarks = QStringLiteral("remarks");
inline const QString FullMd5 = QStringLiteral("fullMd5");

//! In the reply only.
inline const QString Data = QStringLiteral("data");
inline const QString FullPath = QStringLiteral("fullPath");
inline const QString FullSize = QStringLiteral("fullSize");

//! In the state file only.
inline const QString UpdateState = QStringLiteral("updateState");

//! In `updateConfig.json` and in the settings.
inline const QString Version = QStringLiteral("version");

//! Reserved; unused so far.
inline const QString ServerAddress = QStringLiteral("serverAddress");
inline const QString UpdatePath = QStringLiteral("updatePath");
inline const QString OldPrefix = QStringLiteral("old_");

} // namespace UpdateKeys
