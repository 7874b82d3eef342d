#pragma once

#include <QString>

//! \brief Keys of the update service's reply, of the state file, and of the record of the installed version.
namespace UpdateKeys {

//! In the reply and in the state file.
inline const QString PackageVersion = QStringLiteral("pVersion");
inline const QString Remarks = QStringLiteral("remarks");
inline const QString FullMd5 = QStringLiteral("fullMd5");

//! In the reply alone.
inline const QString Data = QStringLiteral("data");
inline const QString FullPath = QStringLiteral("fullPath");
inline const QString FullSize = QStringLiteral("fullSize");

//! In the state file alone.
inline const QString UpdateState = QStringLiteral("updateState");

//! In `updateConfig.json` and in the settings.
inline const QString Version = QStringLiteral("version");

//! Set aside; nothing uses them yet.
inline const QString ServerAddress = QStringLiteral("serverAddress");
inline const QString UpdatePath = QStringLiteral("updatePath");
inline const QString OldPrefix = QStringLiteral("old_");

} // namespace UpdateKeys
