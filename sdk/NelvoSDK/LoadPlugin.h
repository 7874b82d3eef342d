#pragma once

//! \file
//! \brief Loading the library at run time.

#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QDir>
#include <QLibrary>
#include <QString>

namespace NelvoSDK {

//! \brief Loads the library NelvoPlugin and gives its plug-in object.
//!
//! At any time, also before an application object exists. Any thread. The library stays loaded to the end of
//! the process; to load it again gives the same object.
//! \param directory the folder with the library, such as QCoreApplication::applicationDirPath().
//! \param error takes the reason of a failure; otherwise it stays as it was. May be null.
//! \return the plug-in object, owned by the library; null if there is no library, if it can't be
//!   loaded, often for want of another one, or if it has no plug-in.
inline INelvoSDKPlugin* LoadPlugin(const QString& directory, QString* error = nullptr)
{
    const auto fail = [error](const QString& reason) -> INelvoSDKPlugin* {
        if (error)
            *error = reason;
        return nullptr;
    };
    // Without prefix and suffix: QLibrary adds those of the system.
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
