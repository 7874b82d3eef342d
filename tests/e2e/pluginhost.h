#pragma once

#include "tests/support/applicationfile.h"
#include "tests/support/recorders.h"

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IMessageMgr.h>
#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QQuickView>

#include <memory>

namespace E2e {

//! The plug-in object of the built library, resolved through its export.
NelvoSDK::INelvoSDKPlugin* plugin();

//! \brief A host in small: initialises the plug-in, attaches an observer, and shuts it down at the end.
//!
//! The files beside the executable are its own for as long as it lives.
class PluginHost
{
public:
    explicit PluginHost(const QString& defaultServer);
    ~PluginHost();
    Q_DISABLE_COPY(PluginHost)

    NelvoSDK::ILoginActor* actor() const;
    //! The login window; null unless there is exactly one window.
    QQuickView* window() const;
    //! What the pages know as `loginCtrl`.
    QObject* loginCtrl() const;
    //! Signs an account of the simulator in by the pages' calls in the pages' order, without the window,
    //! and enters its first enterprise. The session of that sign-in; an empty one if it failed, with the
    //! reason in `message` if that is given.
    NelvoSDK::LoginSession signIn(const QString& url, const QString& user, QString* message = nullptr) const;

    TestSupport::LoginRecorder observer;
    TestSupport::ApplicationFile cache{QStringLiteral("loginchache.json")};
    TestSupport::ApplicationFile defaultServerFile{QStringLiteral("defaultServerAddress.json")};
    TestSupport::ApplicationFile suffixFile{QStringLiteral("ProxyUrlSuffix.json")};
    TestSupport::ApplicationFile versionFile{QStringLiteral("updateConfig.json")};
};

} // namespace E2e
