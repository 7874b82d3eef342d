#include "fuzz/support.h"
#include "login/loginactor.h"
#include "login/tools.h"

#include <QCoreApplication>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickView>

using NelvoPlugin::CLoginActor;

namespace {

//! \brief The login window with its pages, which show the list of enterprises.
struct LoginWindow {
    LoginWindow()
    {
        qmlRegisterType<CTools>("PercentTools", 1, 0, "PercentTools");
        view.rootContext()->setContextProperty(QStringLiteral("view"), &view);
        actor.ShowLogin();
        Fuzz::require(view.status() == QQuickView::Ready);
    }

    QQuickItem* item(const char* name) const
    {
        return view.rootObject()->findChild<QQuickItem*>(QLatin1String(name));
    }

    void showList() const
    {
        if (!item("applistComp"))
            QMetaObject::invokeMethod(view.rootObject(), "replacePage",
                                      Q_ARG(QVariant, QStringLiteral("AppListComp")));
    }

    QQuickView view;
    CLoginActor actor{&view};
};

} // namespace

//! The list of enterprises, from the service to the page where the user chooses one.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray form = "<html/>";
    Fuzz::Network network;
    network.answer("/login", {form});
    network.answer("/rs/casLogin/listCompany", {Fuzz::bytesOf(data, size)});

    // Loading the pages takes longer than everything else, so all inputs share a window.
    static auto& window = *new LoginWindow;
    window.showList();
    const auto user = QStringLiteral("lina");
    const auto address = QStringLiteral("http://cim");
    if (!window.actor.login(user, {}, address, {}).isEmpty())
        return 0;
    // With a single enterprise the page chooses it by itself.
    QCoreApplication::processEvents();
    if (QQuickItem* const page = window.item("applistComp")) {
        QMetaObject::invokeMethod(window.item("companyList"), "forceLayout");
        if (!window.actor.appList().isEmpty())
            QMetaObject::invokeMethod(page, "select", Q_ARG(QVariant, 0));
    }
    // It looks for an enterprise by its id.
    window.actor.loginFromCommandLine(user, {}, address, QStringLiteral("1001"));
    return 0;
}
