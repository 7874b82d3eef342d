#include "login/loginactor.h"

#include "login/addressfiles.h"
#include "login/casform.h"
#include "login/logincache.h"
#include "login/windowactivity.h"
#include "web/cookiesjar.h"
#include "web/jsonfile.h"
#include "web/webclient.h"

#include <NelvoSDK/RecordKeys.h>

#include <QCoreApplication>
#include <QDebug>
#include <QEventLoop>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickView>
#include <QUrl>

#include <utility>

namespace NelvoPlugin {

namespace {

const auto LoginPath = QStringLiteral("/login");

QNetworkRequest formRequest(const QString& cimUrl, const QString& path)
{
    QNetworkRequest request = buildRequest();
    request.setUrl(QUrl(cimUrl + path, QUrl::TolerantMode));
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QStringLiteral("application/x-www-form-urlencoded"));
    return request;
}

bool succeeds(const QNetworkReply* reply, const QObject* owner, QEventLoop& loop)
{
    return waitForReply(reply, owner, loop) && reply->error() == QNetworkReply::NoError;
}

struct ServiceAddresses {
    QString editorUrl;
    QString iotUrl;
};

//! Reads until both addresses are known. If a name occurs twice before that, the later address counts.
ServiceAddresses findServices(const QJsonArray& servers)
{
    ServiceAddresses found;
    for (const QJsonValue server : servers) {
        const QString name = server[QStringLiteral("serverName")].toString();
        const QString url = server[QStringLiteral("serverURL")].toString();
        if (name == QStringLiteral("varlo-editor"))
            found.editorUrl = url;
        else if (name == QStringLiteral("iot_new"))
            found.iotUrl = url;
        if (!found.editorUrl.isEmpty() && !found.iotUrl.isEmpty())
            break;
    }
    return found;
}

void logJsonObject(const QJsonObject& object)
{
    const QString text = QString::fromUtf8(QJsonDocument(object).toJson());
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& line : lines)
        qWarning().noquote() << line;
}

//! The cookies of `after` that `before` does not contain in the same form, as text.
QString newCookies(const QList<QNetworkCookie>& before, const QList<QNetworkCookie>& after)
{
    QStringList texts;
    for (const QNetworkCookie& cookie : after) {
        if (!before.contains(cookie))
            texts.append(QString::fromUtf8(cookie.toRawForm(QNetworkCookie::Full)));
    }
    return texts.join(QLatin1Char(','));
}

//! Sends a request to the editor service, which sets its cookies, and returns the new cookies as text.
bool captureEditorCookies(const QString& editorUrl, const QObject* owner, QString& cookies)
{
    const QList<QNetworkCookie> before = sharedCookieJar()->allCookies();
    QJsonObject ignored;
    if (!httpGetJson(sharedNetworkManager(), editorUrl, QStringLiteral("/org/heartbeat"), {}, ignored, owner))
        return false;
    cookies = newCookies(before, sharedCookieJar()->allCookies());
    qDebug().noquote() << "cookiesList:" << cookies;
    return true;
}

//! The name of the first enterprise with that id; empty if there is none. A non-numeric id reads as 0.
QString enterpriseName(const QJsonArray& companies, int id)
{
    for (const QJsonValue company : companies) {
        if (company[QStringLiteral("enterpriseId")].toInt() == id)
            return company[QStringLiteral("enterpriseName")].toString();
    }
    return {};
}

NelvoSDK::LoginSession toLoginSession(const QJsonObject& session)
{
    const auto text = [&session](const char* key) {
        return session.value(QLatin1String(key)).toString().toStdWString();
    };
    NelvoSDK::LoginSession record;
    record.cookies = text("cookies");
    record.serverAddr = text("serverAddr");
    record.sdkAddr = text("sdkAddr");
    record.appVer = text("appVer"); // no session contains it, so it is empty in every record
    record.token = text("token");
    record.epName = text("epName");
    record.loggedIn = true;
    record.iotToken = text("iotToken");
    record.extra[NelvoSDK::RecordKeys::EpId] = text("epId");
    record.extra[NelvoSDK::RecordKeys::EpName] = text("epName");
    return record;
}

} // namespace

CLoginActor::CLoginActor(QQuickView* view, QObject* parent)
    : QObject(parent), m_view(view), m_activity(WindowActivity::of(*view)), m_defaultUrl(readDefaultServer())
{
    QQmlContext* context = m_view->rootContext();
    context->setContextProperty(QStringLiteral("loginCtrl"), this);
    context->setContextProperty(QStringLiteral("updater"), &m_updater);
    context->setContextProperty(QStringLiteral("defaultUrl"), m_defaultUrl);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &CLoginActor::logout);
    m_urlSuffix = readUrlSuffix();
    connect(&m_activity, &WindowActivity::idle, this, &CLoginActor::showIfWanted);
}

void CLoginActor::ReservedFirst() {}

void CLoginActor::ReservedSecond() {}

bool CLoginActor::ReservedFlag()
{
    return false;
}

void CLoginActor::ShowLogin()
{
    if (m_activity.isBusy()) {
        m_showLater = true;
        return;
    }
    const QPointer<CLoginActor> self(this);
    const WindowActivity::Scope showing(m_activity);
    m_view->setSource(QUrl(QStringLiteral("qrc:/NelvoPlugin/qmls/Main.qml"), QUrl::TolerantMode));
    if (self)
        m_view->show();
    if (!self)
        return;

    std::list<UserCacheEntry> users;
    CLoginCache::readUsers(users);
    QJsonArray userInfos;
    for (const UserCacheEntry& user : users)
        userInfos.append(CLoginCache::toJsonObject(user));
    if (QQuickItem* page = m_view->rootObject())
        page->setProperty("userInfos", QVariant(userInfos));
}

void CLoginActor::showIfWanted()
{
    if (std::exchange(m_showLater, false))
        QMetaObject::invokeMethod(this, &CLoginActor::ShowLogin, Qt::QueuedConnection);
}

void CLoginActor::Attach(NelvoSDK::ILoginObserver* observer)
{
    ISubject::Attach(observer);
}

void CLoginActor::Detach(NelvoSDK::ILoginObserver* observer)
{
    ISubject::Detach(observer);
}

QJsonArray CLoginActor::appList() const
{
    return m_appList;
}

QString CLoginActor::login(QString userName, QString pwd, QString cimUrl, QString pdsUrl, bool pwdIsMd5)
{
    Q_UNUSED(pdsUrl)
    const QPointer<CLoginActor> self(this);
    const WindowActivity::Scope call(m_activity);
    QString message = signIn(userName, pwdIsMd5 ? pwd : passwordDigest(pwd), cimUrl);
    if (self && !message.isEmpty())
        Notify([](NelvoSDK::ILoginObserver& observer) { observer.OnLoginFailed(); });
    return message;
}

QString CLoginActor::signIn(const QString& userName, const QString& passwordText, const QString& cimUrl)
{
    QEventLoop loop;

    QNetworkReply* page = sharedNetworkManager()->get(formRequest(cimUrl, LoginPath));
    if (!succeeds(page, this, loop))
        return page->errorString();
    CasFormValues values;
    if (!parseLoginArgs(page->readAll(), values))
        return QStringLiteral("parseLoginArgs failed");

    QNetworkReply* answer = sharedNetworkManager()->post(formRequest(cimUrl, LoginPath),
                                                         loginForm(values, userName, passwordText));
    if (!succeeds(answer, this, loop))
        return answer->errorString();
    if (!parsePostResult(answer->readAll()))
        return QStringLiteral("parsePostResult failed");
    m_cimUrl = cimUrl;

    QNetworkReply* companies =
        sharedNetworkManager()->get(formRequest(cimUrl, QStringLiteral("/rs/casLogin/listCompany")));
    if (!succeeds(companies, this, loop))
        return companies->errorString();
    // Set again: another sign-in may have run and ended while this one was waiting.
    m_cimUrl = cimUrl;
    const QJsonDocument document = parseJson(companies->readAll(), NELVO_HERE);
    if (document.isNull())
        return QStringLiteral("read compList failed");
    m_appList = document.array();
    Q_EMIT appListChanged();
    return {};
}

QString CLoginActor::getToken(QString appID, QString secret)
{
    Q_UNUSED(appID)
    Q_UNUSED(secret)
    return {};
}

void CLoginActor::onResetCache(QVariant user, QVariant passwd, QVariant cimUrl, QVariant pdsUrl,
                               QVariant bKeep)
{
    const QString keptPasswd = bKeep.toBool() ? passwd.toString() : QStringLiteral("");
    CLoginCache::updateUser(user.toString(), keptPasswd, cimUrl.toString(), pdsUrl.toString());
}

void CLoginActor::onLogin(QString cimUrl, QString epID, QString epName)
{
    const QPointer<CLoginActor> self(this);
    const WindowActivity::Scope call(m_activity);
    const QJsonObject binding{{QStringLiteral("epid"), epID},
                              {QStringLiteral("version"), QStringLiteral("1.0.0")}};
    // Each of the three calls logs the request, and the sign-in continues if one fails. Both are intentional.
    if (httpPost(
            sharedNetworkManager(), cimUrl, QStringLiteral("/rs/casLogin/casLogin"),
            QJsonDocument(binding).toJson(), {}, [](const QByteArray&) { return true; }, this)) {
        logJsonObject(binding);
    }
    if (!self)
        return;
    QJsonArray servers;
    if (httpGetJsonArray(sharedNetworkManager(), m_cimUrl, QStringLiteral("/rs/casLogin/serverUrl"), servers,
                         this)) {
        logJsonObject(binding);
    }
    if (!self)
        return;
    QString iotToken;
    const auto keepToken = [&iotToken](const QByteArray& body) {
        iotToken = QString::fromUtf8(body);
        return true;
    };
    if (httpGet(sharedNetworkManager(), m_cimUrl, QStringLiteral("/rs/cim/nelvo/client_token"), {}, keepToken,
                this)) {
        logJsonObject(binding);
    }
    if (!self)
        return;

    const ServiceAddresses services = findServices(servers);
    if (!services.iotUrl.isEmpty())
        QCoreApplication::instance()->setProperty("iotUrl", services.iotUrl);
    if (services.editorUrl.isEmpty()) {
        qDebug().noquote() << QStringLiteral("获取代理地址失败, 请检查服务器部署");
        return;
    }
    QString cookies;
    if (!captureEditorCookies(services.editorUrl, this, cookies)) {
        if (self)
            qDebug("CLoginActor::onLogin getprojList /org/heartbeat falied!");
        return;
    }

    m_session = QJsonObject{
        {QStringLiteral("serverAddr"), services.editorUrl + m_urlSuffix},
        {QStringLiteral("sdkAddr"), services.editorUrl},
        {QStringLiteral("epId"), epID},
        {QStringLiteral("epName"), epName},
        {QStringLiteral("token"), m_token},
        {QStringLiteral("cookies"), cookies},
        {QStringLiteral("iotToken"), iotToken},
    };
}

void CLoginActor::onShowHome()
{
    const QPointer<CLoginActor> self(this);
    const WindowActivity::Scope call(m_activity);
    // Closing the login window must not end the host.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    m_view->close();
    if (!self)
        return;
    const NelvoSDK::LoginSession session = toLoginSession(m_session);
    Notify([&session](NelvoSDK::ILoginObserver& observer) { observer.OnLoginSucceeded(session); });
}

void CLoginActor::loginFromCommandLine(QString userName, QString pwd, QString cimUrl, QString epId)
{
    const QPointer<CLoginActor> self(this);
    const QString message = login(userName, pwd, cimUrl, {}, true);
    if (!self)
        return;
    if (!message.isEmpty()) {
        qWarning().noquote() << "login failed:" << message;
        // The event loop ends the application later. Until then the sign-in continues as after a success.
        // This is intentional: the calling program waits for its end.
        QCoreApplication::quit();
    }
    onLogin(cimUrl, epId, enterpriseName(m_appList, epId.toInt()));
    if (self)
        onShowHome();
}

//! Runs at every orderly quit. If nobody has signed in, the address is relative: the call fails and is
//! logged.
void CLoginActor::logout()
{
    httpGet(sharedNetworkManager(), m_cimUrl, QStringLiteral("/rs/casLogin/logout"), {}, {}, this);
}

} // namespace NelvoPlugin
