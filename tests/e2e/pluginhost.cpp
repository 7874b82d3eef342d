#include "tests/e2e/pluginhost.h"

#include <QGuiApplication>
#include <QLibrary>
#include <QQmlContext>

namespace E2e {

NelvoSDK::INelvoSDKPlugin* plugin()
{
    static const auto getPlugin = [] {
        QLibrary library(QStringLiteral(NELVO_PLUGIN_FILE));
        const auto function =
            reinterpret_cast<NelvoSDK::GetNelvoSDKPluginFunction>(library.resolve("GetNelvoSDKPlugin"));
        if (!function)
            qFatal("%s", qUtf8Printable(library.errorString()));
        return function;
    }();
    return getPlugin();
}

PluginHost::PluginHost(const QString& defaultServer)
{
    QGuiApplication::setQuitOnLastWindowClosed(false);
    defaultServerFile.write("{\"defaultServer\": \"" + defaultServer.toUtf8() + "\"}");
    suffixFile.write(R"({"UrlSuffix": "/proxy"})");
    plugin()->Initialize();
    actor()->Attach(&observer);
}

PluginHost::~PluginHost()
{
    actor()->Detach(&observer);
    plugin()->Shutdown();
}

NelvoSDK::ILoginActor* PluginHost::actor() const
{
    return plugin()->GetLoginMgr()->GetLoginActor();
}

QQuickView* PluginHost::window() const
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return windows.size() == 1 ? qobject_cast<QQuickView*>(windows.constFirst()) : nullptr;
}

QObject* PluginHost::loginCtrl() const
{
    return window()->rootContext()->contextProperty(QStringLiteral("loginCtrl")).value<QObject*>();
}

} // namespace E2e
