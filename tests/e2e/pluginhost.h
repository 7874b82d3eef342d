#pragma once

#include "tests/support/applicationfile.h"
#include "tests/support/recorders.h"

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IMessageMgr.h>
#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QGuiApplication>
#include <QQuickView>
#include <QtTest>

#include <memory>

namespace E2e {

//! The plug-in object of the built library, resolved through its export.
NelvoSDK::INelvoSDKPlugin* plugin();

//! \brief A minimal host: initialises the plug-in, attaches an observer, and shuts the plug-in down at the
//!   end.
//!
//! While it exists, it replaces the files beside the executable.
class PluginHost
{
public:
    explicit PluginHost(const QString& defaultServer);
    ~PluginHost();
    Q_DISABLE_COPY(PluginHost)

    NelvoSDK::ILoginActor* actor() const;
    //! The login window; null unless there is exactly one window.
    QQuickView* window() const;
    //! The object that the pages know as `loginCtrl`.
    QObject* loginCtrl() const;
    //! Signs in an account of the simulator with the pages' calls in their order, without the window, and
    //! enters its first enterprise. Returns the session, or after a failure an empty one, with the reason in
    //! `message` if it is not null.
    NelvoSDK::LoginSession signIn(const QString& url, const QString& user, QString* message = nullptr) const;

    TestSupport::LoginRecorder observer;
    TestSupport::ApplicationFile cache{QStringLiteral("loginchache.json")};
    TestSupport::ApplicationFile defaultServerFile{QStringLiteral("defaultServerAddress.json")};
    TestSupport::ApplicationFile suffixFile{QStringLiteral("ProxyUrlSuffix.json")};
    TestSupport::ApplicationFile versionFile{QStringLiteral("updateConfig.json")};
};

} // namespace E2e

//! \brief The main function of an end-to-end program: QTEST_MAIN, but only Qt Test gets the arguments. The
//!   library treats a single argument of the application as a sign-in.
#define E2E_MAIN(Test)                                                                                       \
    int main(int argc, char** argv)                                                                          \
    {                                                                                                        \
        int onlyTheProgram = 1;                                                                              \
        QCoreApplication::setAttribute(Qt::AA_Use96Dpi);                                                     \
        const QGuiApplication application(onlyTheProgram, argv);                                             \
        Test test;                                                                                           \
        QTEST_SET_MAIN_SOURCE_PATH                                                                           \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
