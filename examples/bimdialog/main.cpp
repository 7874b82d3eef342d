// A host that embeds the plug-in's BIM dialog in its own QML scene. After the sign-in it shows the
// enterprise's models and receives the user's choice. The example "minimal" explains the sign-in.

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>
#include <NelvoSDK/LoadPlugin.h>

#include <QGuiApplication>
#include <QPointer>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickView>
#include <QTimer>

#include <cstdlib>
#include <iostream>

namespace {

//! The host: observes the plug-in, and is the object that the scene and the dialog's pages call.
class Host final : public QObject, private NelvoSDK::ILoginObserver, private NelvoSDK::IPdsObserver
{
    Q_OBJECT
    Q_PROPERTY(bool signedIn MEMBER m_isSignedIn NOTIFY signedInChanged)
    //! The last choice of the user, as text.
    Q_PROPERTY(QString chosen MEMBER m_chosen NOTIFY chosenChanged)
    //! The dialog's pages read it: they offer outline models in a main project only.
    Q_PROPERTY(bool isMainProject READ isMainProject CONSTANT)

public:
    explicit Host(NelvoSDK::INelvoSDKPlugin& plugin) : m_plugin(plugin)
    {
        m_plugin.Initialize();
        m_plugin.GetProjectInfoMgr()->SetPlugin(&m_plugin);
        m_plugin.GetPdsMgr()->SetPlugin(&m_plugin);
        m_plugin.GetLoginMgr()->GetLoginActor()->Attach(this);
        m_plugin.GetPdsMgr()->Attach(this);
    }

    ~Host() override
    {
        m_plugin.GetPdsMgr()->Detach(this);
        m_plugin.GetLoginMgr()->GetLoginActor()->Detach(this);
        m_plugin.Shutdown();
    }

    //! Creates the scene and the dialog in it. Call it once, with a view that ends before the host.
    void furnish(QQuickView& view)
    {
        connect(this, &Host::signedInChanged, &view, &QWindow::show);
        QQmlContext* const context = view.rootContext();
        context->setContextProperty(QStringLiteral("host"), this);
        // The dialog's pages find the host under these two names. The spelling of the second is intentional.
        context->setContextProperty(QStringLiteral("bimControl"), this);
        context->setContextProperty(QStringLiteral("editConext"), this);
        m_plugin.GetPdsMgr()->SetQmlContext(context);
        view.setSource(QUrl(QStringLiteral("qrc:/Scene.qml")));
        auto* const place = view.rootObject()->findChild<QQuickItem*>(QStringLiteral("dialogPlace"));
        m_plugin.GetPdsMgr()->CreateBimDialog(place);
        m_dialog = place->findChild<QQuickItem*>(QString(), Qt::FindDirectChildrenOnly);
    }

    //! Deletes the dialog. Call it before the scene ends; otherwise the dialog's bindings log errors.
    void clear() { delete m_dialog; }

    void start() { m_plugin.GetLoginMgr()->Start(); }

    bool isMainProject() const { return true; }
    //! The dialog's pages call it before OnDownLoadBimProj. An editor returns false for a model that it has
    //! imported already.
    Q_INVOKABLE bool checkBimProjValid(const QString& /*guid*/, bool /*isMainProject*/) const { return true; }

    Q_INVOKABLE void openBimDialog() { m_plugin.GetPdsMgr()->OpenBimDialog(); }
    Q_INVOKABLE void openDwgDialog() { m_plugin.GetPdsMgr()->OpenDWGBimDialog(); }
    Q_INVOKABLE void reportModels(const QStringList& names) const
    {
        say(QStringLiteral("models: ") + names.join(QStringLiteral(", ")));
    }

Q_SIGNALS:
    void signedInChanged();
    void chosenChanged();

private:
    //! Long work waits until the login window has closed.
    void OnLoginSucceeded(const NelvoSDK::LoginSession& session) override
    {
        if (session.sdkAddr.empty())
            return say(QStringLiteral("the sign-in brought no editor service"));
        say(QStringLiteral("signed in: ") + QString::fromStdWString(session.epName));
        QTimer::singleShot(0, this, [this, session] { offerModels(session); });
    }

    void OnLoginFailed() override { say(QStringLiteral("the sign-in failed")); }

    //! The dialog filters its list by the organisation tree, which the project manager reads.
    void offerModels(const NelvoSDK::LoginSession& session)
    {
        m_plugin.GetProjectInfoMgr()->ReflushProjOrgInfo(session);
        m_plugin.GetPdsMgr()->InitBimData();
        // The plug-in sets this to false at each sign-in, because the login window closes before this window
        // opens. From now on, closing this window ends the application.
        QGuiApplication::setQuitOnLastWindowClosed(true);
        m_isSignedIn = true;
        Q_EMIT signedInChanged();
        openBimDialog();
    }

    void OnBimDialogOpened(QQuickItem* /*dialog*/) override { say(QStringLiteral("the dialog is open")); }
    void OnBimDialogClosed(QQuickItem* /*dialog*/) override { say(QStringLiteral("the dialog is closed")); }
    void OnBimProjListCleared() override {}
    void OnBimProjListSynced() override {}

    void OnDownLoadBimProj(const QStringList& guids) override
    {
        for (const QString& guid : guids)
            choose(QStringLiteral("import: ") + nameOf(guid));
    }

    void OnConvertSimplyMode(const QString& guid, bool completionFirst) override
    {
        choose((completionFirst ? QStringLiteral("outline, complete: ") : QStringLiteral("outline, fast: ")) +
               nameOf(guid));
    }

    void choose(const QString& what)
    {
        say(what);
        m_chosen = what;
        Q_EMIT chosenChanged();
    }

    QString nameOf(const QString& guid) const
    {
        return QString::fromStdWString(m_plugin.GetPdsMgr()->GetBimProjName(guid.toStdWString()));
    }

    static void say(const QString& text) { std::cout << text.toStdString() << std::endl; }

    NelvoSDK::INelvoSDKPlugin& m_plugin;
    QPointer<QQuickItem> m_dialog; //!< owned by its parent in the scene
    bool m_isSignedIn = false;
    QString m_chosen;
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    const QGuiApplication application(argc, argv);
    QString error;
    NelvoSDK::INelvoSDKPlugin* const plugin =
        NelvoSDK::LoadPlugin(QCoreApplication::applicationDirPath(), &error);
    if (!plugin) {
        std::cerr << error.toStdString() << std::endl;
        return EXIT_FAILURE;
    }

    Host host(*plugin);
    QQuickView view;
    host.furnish(view);
    QTimer::singleShot(0, &host, &Host::start);
    const int status = QGuiApplication::exec();
    host.clear();
    return status;
}

#include "main.moc"
