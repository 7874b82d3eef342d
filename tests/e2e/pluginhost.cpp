#include "tests/e2e/pluginhost.h"

#include "tests/support/accounts.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPointer>
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
    versionFile.write(R"({"version": "1.0.0"})");
    plugin()->Initialize();
    actor()->Attach(&observer);
}

PluginHost::~PluginHost()
{
    if (plugin()->GetLoginMgr())
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

NelvoSDK::LoginSession PluginHost::signIn(const QString& url, const QString& user, QString* message) const
{
    // A shutdown during the call deletes the object.
    const QPointer<QObject> control(loginCtrl());
    QString refused;
    QMetaObject::invokeMethod(control, "login", Q_RETURN_ARG(QString, refused), Q_ARG(QString, user),
                              Q_ARG(QString, TestSupport::passwordOf(user)), Q_ARG(QString, url),
                              Q_ARG(QString, QString()));
    if (message)
        *message = refused;
    if (!control || !refused.isEmpty())
        return {};
    const QJsonArray companies = control->property("appList").toJsonArray();
    if (companies.isEmpty())
        return {};
    const QJsonObject company = companies.at(0).toObject();
    QMetaObject::invokeMethod(
        control, "onLogin", Q_ARG(QString, url),
        Q_ARG(QString, QString::number(company.value(QStringLiteral("enterpriseId")).toInt())),
        Q_ARG(QString, company.value(QStringLiteral("enterpriseName")).toString()));
    QMetaObject::invokeMethod(control, "onShowHome");
    return observer.sessions.isEmpty() ? NelvoSDK::LoginSession{} : observer.sessions.constLast();
}

} // namespace E2e
