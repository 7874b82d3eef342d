#pragma once

#include "docs/snippets/orders.h"

#include <NelvoSDK/IHostContext.h>
#include <NelvoSDK/ILoginObserver.h>
#include <NelvoSDK/IMessageObserver.h>
#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QObject>
#include <QString>

namespace Snippets {

//! [host-class]
class Host : public QObject, private NelvoSDK::ILoginObserver, private NelvoSDK::IMessageObserver
{
    Q_OBJECT

public:
    Host(NelvoSDK::INelvoSDKPlugin& plugin, NelvoSDK::IHostContext* context);
    ~Host() override;
    Q_DISABLE_COPY(Host)

    void start();
    void signInAgain();

    //! All calls to the plug-in go through this queue.
    Orders& orders() { return m_orders; }

Q_SIGNALS:
    //! The first `earlierUnits` children of the organisation tree's root are those of earlier sign-ins.
    void sessionInstalled(int earlierUnits);
    void noService();
    void pushedOut(const QString& message);

private:
    void OnLoginSucceeded(const NelvoSDK::LoginSession& session) override;
    void OnLoginFailed() override {} // the login window shows the reason
    void OnMessageFirst(const QString& text) override;
    void OnMessageSecond(const QString& /*text*/) override {}
    void OnMessageThird(const QString& /*text*/) override {}

    void install(NelvoSDK::LoginSession session);

    NelvoSDK::INelvoSDKPlugin& m_plugin;
    Orders m_orders;
    NelvoSDK::LoginSession m_session;
    bool m_pushedOut = false;
};
//! [host-class]

} // namespace Snippets
