#pragma once

//! \file
//! \brief Loads the library at run time.

#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QDir>
#include <QLibrary>
#include <QString>

namespace NelvoSDK {

//! \brief Loads the library NelvoPlugin and returns its plug-in object.
//!
//! Any thread, at any time, also before an application object exists. The library stays loaded until the
//! process ends; a second call returns the same object.
//! \param directory the folder that contains the library, such as QCoreApplication::applicationDirPath().
//! \param error receives the reason of a failure; unchanged after a success. May be null.
//! \return the plug-in object, owned by the library. Null if the library is missing, if it cannot be loaded,
//!   often because a library that it needs is missing, or if it has no plug-in object.
inline INelvoSDKPlugin* LoadPlugin(const QString& directory, QString* error = nullptr)
{
    const auto fail = [error](const QString& reason) -> INelvoSDKPlugin* {
        if (error)
            *error = reason;
        return nullptr;
    };
    // QLibrary adds the prefix and suffix of the system.
    QLibrary library(QDir(directory).filePath(QStringLiteral("NelvoPlugin")));
    library.setLoadHints(QLibrary::PreventUnloadHint);
    if (!library.load())
        return fail(library.errorString());
    const auto getPlugin = reinterpret_cast<GetNelvoSDKPluginFunction>(library.resolve("GetNelvoSDKPlugin"));
    if (!getPlugin)
        return fail(QStringLiteral("%1 does not export GetNelvoSDKPlugin").arg(library.fileName()));
    INelvoSDKPlugin* const plugin = getPlugin();
    return plugin ? plugin : fail(QStringLiteral("%1 has no plug-in").arg(library.fileName()));
}

} // namespace NelvoSDK
