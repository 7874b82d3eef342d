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

//! \brief The main function of an end-to-end program: as QTEST_MAIN, but only Qt Test gets the arguments. The
//! library takes a single argument of the application for a sign-in.
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
