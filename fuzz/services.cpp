#include "fuzz/support.h"
#include "login/loginactor.h"
#include "web/cookiesjar.h"
#include "web/webclient.h"

#include <QQuickView>

namespace {

//! \brief Receives the session of the sign-in.
class Observer final : public NelvoSDK::ILoginObserver
{
public:
    void OnLoginSucceeded(const NelvoSDK::LoginSession& session) override { Fuzz::require(session.loggedIn); }
    void OnLoginFailed() override {}
};

} // namespace

//! The replies after the choice of an enterprise: the addresses of the services in the first line of the
//! input, the token of the IoT service in the second, and the cookies of the editor service in the others.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QList<QByteArray> lines = Fuzz::bytesOf(data, size).split('\n');
    Fuzz::Network network;
    network.answer("/rs/casLogin/serverUrl", {lines.takeFirst()});
    network.answer("/rs/cim/nelvo/client_token", {lines.isEmpty() ? QByteArray() : lines.takeFirst()});
    network.answer("/org/heartbeat", {"{}", 200, lines.join('\n')});
    sharedCookieJar()->setAllCookies({});

    static auto& view = *new QQuickView;
    NelvoPlugin::CLoginActor actor(&view);
    Observer observer;
    actor.Attach(&observer);
    actor.onLogin(QStringLiteral("http://cim"), QStringLiteral("1001"), QStringLiteral("Enterprise"));
    actor.onShowHome();
    return 0;
}
