#include "probe/walk.h"

#include "probe/explanation.h"
#include "probe/formpage.h"

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>
#include <NelvoSDK/LoadPlugin.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQmlContext>
#include <QQuickView>

#include <utility>

namespace NelvoDevkit {

namespace {

const auto NoEditorText = QStringLiteral("获取代理地址失败, 请检查服务器部署");
const auto UnreadableFormText = QStringLiteral("parseLoginArgs failed");
const auto LoginPath = QStringLiteral("/login");
const auto HeartbeatPath = QStringLiteral("/org/heartbeat");

QQuickView* findWindow()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow* window : windows) {
        if (auto* const view = qobject_cast<QQuickView*>(window))
            return view;
    }
    return nullptr;
}

QObject* objectOfPages(const QQuickView& window, const char* name)
{
    return window.rootContext()->contextProperty(QLatin1String(name)).value<QObject*>();
}

//! Whether the reply to the form is a redirect to another page, as after a successful sign-in.
bool isWelcomed(const TracedExchange& form)
{
    return form.answeredBy != form.url && !isSentToForm(form);
}

//! Describes a redirect of the form to another server or another scheme.
QString redirectWords(const TracedExchange& form)
{
    const QUrl& last = form.answeredBy;
    if (last.scheme() == form.url.scheme() && last.authority() == form.url.authority())
        return {};
    return QStringLiteral("redirected to %1://%2; give that address: a redirect turns the POST of the form "
                          "into a GET, which "
                          "carries no password")
        .arg(last.scheme(), last.authority(QUrl::EncodeUnicode));
}

int unitCount(const NelvoSDK::OrgTreeNode& node)
{
    int count = 1;
    for (const NelvoSDK::OrgTreeNode& child : node.children)
        count += unitCount(child);
    return count;
}

QString idOf(const QJsonObject& company)
{
    return company.value(QStringLiteral("enterpriseId")).toVariant().toString();
}

QString counted(int count, const char* one, const char* many)
{
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

//! Describes the error in the update service's reply; empty if there is none.
QString releaseFault(const QByteArray& body)
{
    const QJsonObject reply = QJsonDocument::fromJson(body).object();
    if (reply.isEmpty())
        return QStringLiteral("the reply is no JSON object");
    const QJsonValue code = reply.value(QStringLiteral("code"));
    if (code.toInt(-1) != 200) {
        return QStringLiteral("the reply has the code %1 in place of 200: %2")
            .arg(code.toVariant().toString(), reply.value(QStringLiteral("message")).toString());
    }
    if (reply.value(QStringLiteral("data")).toObject().value(QStringLiteral("pVersion")).toString().isEmpty())
        return QStringLiteral("the reply names no version (\"pVersion\" in \"data\")");
    return {};
}

} // namespace

Walk::Walk(ProbeOptions options, Findings& findings, Redaction& redaction)
    : m_options(std::move(options))
    , m_findings(findings)
    , m_redaction(redaction)
    , m_judge(m_trace, findings, redaction)
{
    if (m_options.updateUrl.isEmpty())
        m_findings.set({Step::Updates, Verdict::NotAsked, -1, QStringLiteral("--update-url was not given")});
}

void Walk::run()
{
    if (!loadPlugin())
        return;
    if (signIn() && chooseEnterprise() && enterEnterprise()) {
        askOrganisation();
        askProjects();
        askModels();
    }
    askUpdates();
    m_underWay = {Step::SignOut};
    m_judge.beginCall();
}

void Walk::finish()
{
    if (!m_window)
        return;
    signOut();
    m_plugin->GetPdsMgr()->Detach(this);
    m_plugin->GetLoginMgr()->GetLoginActor()->Detach(this);
    m_plugin->Shutdown();
}

void Walk::interrupt()
{
    // Without a call, a request of the probe itself has timed out; its step has failed already.
    qint64 begun = m_judge.callBegan();
    for (const Step step : qAsConst(m_underWay)) {
        const auto exchange = m_judge.exchangeOf(step);
        if (exchange && exchange->isFinished) {
            m_judge.judge(step);
            begun += exchange->milliseconds;
            continue;
        }
        m_judge.setWrong(
            step,
            QStringLiteral("no answer when the %1 s of this walk were over").arg(m_options.patience.count()));
        m_findings.of(step).milliseconds = m_trace.mark().milliseconds - begun;
        return;
    }
}

QString Walk::pluginVersion() const
{
    return m_plugin ? QString::fromStdWString(m_plugin->GetVersion()) : QString();
}

void Walk::OnLoginSucceeded(const NelvoSDK::LoginSession& session)
{
    m_session = session;
}

void Walk::OnBimProjListSynced()
{
    if (m_whenListSynced)
        m_whenListSynced();
}

bool Walk::loadPlugin()
{
    QElapsedTimer clock;
    clock.start();
    QStringList errors;
    for (const QString& folder : qAsConst(m_options.pluginFolders)) {
        QString error;
        m_plugin = NelvoSDK::LoadPlugin(folder, &error);
        if (m_plugin)
            break;
        errors.append(error);
    }
    if (!m_plugin) {
        m_findings.set({Step::PlugIn, Verdict::Wrong, clock.elapsed(),
                        QStringLiteral("the library could not be loaded: ") +
                            m_redaction.redacted(errors.join(QStringLiteral("; ")))});
        return false;
    }
    m_plugin->Initialize();
    m_window = findWindow();
    if (!m_window || !objectOfPages(*m_window, "loginCtrl") || !objectOfPages(*m_window, "updater")) {
        m_findings.set({Step::PlugIn, Verdict::Wrong, clock.elapsed(),
                        QStringLiteral("the library has no login window of the kind that is known here")});
        m_window = nullptr;
        m_plugin->Shutdown();
        return false;
    }
    m_plugin->GetLoginMgr()->GetLoginActor()->Attach(this);
    m_plugin->GetPdsMgr()->Attach(this);
    m_findings.set(
        {Step::PlugIn, Verdict::Well, clock.elapsed(), QStringLiteral("version ") + pluginVersion()});
    return true;
}

bool Walk::signIn()
{
    const QVector<Step> steps{Step::SignInForm, Step::SignIn, Step::Enterprises};
    QObject* const pages = objectOfPages(*m_window, "loginCtrl");
    QString message;
    call(steps, [&] {
        QMetaObject::invokeMethod(pages, "login", Q_RETURN_ARG(QString, message),
                                  Q_ARG(QString, m_options.user), Q_ARG(QString, *m_options.password),
                                  Q_ARG(QString, m_options.url), Q_ARG(QString, QString()));
    });
    m_companies = pages->property("appList").toJsonArray();

    Step last = Step::SignInForm;
    for (const Step step : steps) {
        if (!m_judge.exchangeOf(step))
            continue;
        m_judge.setWell(step,
                        step == Step::SignInForm ? redirectWords(*m_judge.exchangeOf(step)) : QString());
        last = step;
    }
    if (message.isEmpty())
        return true;
    m_judge.setFailed(last, message);
    if (last == Step::Enterprises || message == UnreadableFormText)
        explainRefusedSignIn();
    return false;
}

//! The plug-in accepts every form page and every reply to the form: an error shows only when the company list
//! is missing.
void Walk::explainRefusedSignIn()
{
    const TracedExchange answer = m_judge.exchangeOf(Step::SignIn).value_or(TracedExchange{});
    const auto list = m_judge.exchangeOf(Step::Enterprises);
    const DirectAnswer form = askDirectly(QUrl(m_options.url + LoginPath));
    const QString fault = form.error.isEmpty() ? formPageFault(form.body) : QString();
    QString moved = redirectWords(*m_judge.exchangeOf(Step::SignInForm));
    if (moved.isEmpty() && isSentToForm(answer))
        moved = redirectWords(answer);
    if (!fault.isEmpty()) {
        m_judge.setWrong(Step::SignInForm, fault);
        m_findings.of(Step::SignInForm).askedDirectly = true;
        m_findings.set({Step::SignIn});
        m_findings.set({Step::Enterprises});
    } else if (list && isSentToForm(*list) && !moved.isEmpty()) {
        m_judge.setWrong(Step::SignInForm, moved);
        m_findings.set({Step::SignIn});
        m_findings.set({Step::Enterprises});
    } else if (list && isSentToForm(*list) && isWelcomed(answer)) {
        m_judge.setWrong(
            Step::Enterprises,
            QStringLiteral("the service accepted the sign-in, but does not know the session any more: check "
                           "host, path and \"Secure\" of its cookies"));
    } else if (list && isSentToForm(*list)) {
        m_judge.setWrong(Step::SignIn,
                         QStringLiteral("user name or password rejected: the service redirects the request "
                                        "for the enterprises to its form"));
        m_findings.set({Step::Enterprises});
    } else if (list && !isWelcomed(answer)) {
        m_findings.of(Step::Enterprises).words +=
            QStringLiteral(", which may also mean that the password was rejected");
    }
}

bool Walk::chooseEnterprise()
{
    Finding& list = m_findings.of(Step::Enterprises);
    QStringList ids;
    for (const QJsonValue company : qAsConst(m_companies)) {
        ids.append(idOf(company.toObject()));
        const bool isChosen = !m_options.enterprise || ids.constLast().toInt() == *m_options.enterprise;
        if (!m_enterpriseId.isEmpty() || !isChosen)
            continue;
        m_enterpriseId = ids.constLast();
        m_enterpriseName = company[QStringLiteral("enterpriseName")].toString();
    }
    list.words = counted(ids.size(), "enterprise", "enterprises");
    if (!m_enterpriseId.isEmpty())
        return true;
    list.verdict = Verdict::Wrong;
    if (ids.isEmpty())
        list.words = QStringLiteral("the account has no enterprise: the list is empty, or no JSON array");
    else if (!m_options.enterprise)
        list.words = QStringLiteral("no element of the list has an \"enterpriseId\"");
    else
        list.words = QStringLiteral("the account does not have the enterprise %1; it has %2")
                         .arg(*m_options.enterprise)
                         .arg(ids.join(QStringLiteral(", ")));
    return false;
}

bool Walk::enterEnterprise()
{
    const QVector<Step> steps{Step::Binding, Step::Addresses, Step::Token, Step::Heartbeat};
    QObject* const pages = objectOfPages(*m_window, "loginCtrl");
    call(steps, [&] {
        QMetaObject::invokeMethod(pages, "onLogin", Q_ARG(QString, m_options.url),
                                  Q_ARG(QString, m_enterpriseId), Q_ARG(QString, m_enterpriseName));
    });
    QMetaObject::invokeMethod(pages, "onShowHome");
    m_redaction.hide(QString::fromStdWString(m_session.iotToken).trimmed());
    const QString cookies = QString::fromStdWString(m_session.cookies);
    m_redaction.hideCookies(cookies);
    m_judge.setCookies(cookies);
    for (const Step step : steps) {
        if (m_judge.exchangeOf(step))
            m_judge.judge(step);
    }
    judgeSession();
    return !m_session.sdkAddr.empty();
}

//! Checks all replies together, after each of them has passed alone.
void Walk::judgeSession()
{
    const auto isWell = [this](Step step) { return m_findings.of(step).verdict == Verdict::Well; };
    if (isWell(Step::Binding))
        m_judge.setWell(Step::Binding, m_enterpriseId + QLatin1Char(' ') + m_enterpriseName);

    const auto heartbeat = m_judge.exchangeOf(Step::Heartbeat);
    const QString iot = QCoreApplication::instance()->property("iotUrl").toString();
    if (isWell(Step::Addresses) && !heartbeat) {
        m_judge.setWrong(Step::Addresses, explain(NoEditorText));
    } else if (isWell(Step::Addresses)) {
        const QString editor = heartbeat->url.adjusted(QUrl::RemoveUserInfo).toString().remove(HeartbeatPath);
        m_judge.setWell(Step::Addresses,
                        QStringLiteral("editor service %1, %2")
                            .arg(editor, iot.isEmpty() ? QStringLiteral("no IoT service (\"iot_new\")")
                                                       : QStringLiteral("IoT service ") + iot));
    }

    if (isWell(Step::Heartbeat) && m_session.cookies.empty())
        m_judge.setWrong(Step::Heartbeat,
                         QStringLiteral("the heartbeat sets no cookie, so what follows has no session"));
    if (!isWell(Step::Token) || m_session.sdkAddr.empty())
        return;
    if (m_session.iotToken.empty())
        m_judge.setWrong(Step::Token, QStringLiteral("the reply is empty"));
    else if (m_session.iotToken.find(L'<') != std::wstring::npos)
        m_judge.setWrong(Step::Token,
                         QStringLiteral("the reply is a page, which is taken for the token all the same"));
}

void Walk::askOrganisation()
{
    NelvoSDK::IProjectInfoMgr* const projects = m_plugin->GetProjectInfoMgr();
    projects->SetPlugin(m_plugin);
    call({Step::Organisation}, [&] { projects->ReflushProjOrgInfo(m_session); });
    NelvoSDK::OrgTreeNode root;
    projects->GetOrgTree(root);
    const bool isThere = m_judge.judge(Step::Organisation, counted(unitCount(root), "unit", "units"));
    if (isThere && root.id.empty() && root.children.empty())
        m_judge.setWrong(Step::Organisation, QStringLiteral("the reply holds no tree under \"data\""));
}

void Walk::askProjects()
{
    std::list<NelvoSDK::ProjectNode> projects;
    call({Step::Projects}, [&] { m_plugin->GetProjectInfoMgr()->GetServerProjectTree(projects); });
    m_judge.judge(Step::Projects, counted(static_cast<int>(projects.size()), "project", "projects"));
}

void Walk::askModels()
{
    NelvoSDK::IPdsMgr* const models = m_plugin->GetPdsMgr();
    models->SetPlugin(m_plugin);
    models->SetQmlContext(m_window->rootContext());
    QObject* const pages = objectOfPages(*m_window, "pdsMgr");
    askModels(*pages, Step::Models, "getBimProj");
    askModels(*pages, Step::Drawings, "getDWGBimProj");
}

void Walk::askModels(QObject& pages, Step step, const char* function)
{
    QEventLoop loop;
    m_whenListSynced = [&loop] { loop.quit(); };
    call({step}, [&] {
        QMetaObject::invokeMethod(&pages, function);
        loop.exec();
    });
    m_whenListSynced = nullptr;
    const int count = pages.property("bimProjList").toJsonArray().size();
    m_judge.judge(step, step == Step::Models ? counted(count, "model", "models")
                                             : counted(count, "drawing", "drawings"));
}

void Walk::askUpdates()
{
    if (m_options.updateUrl.isEmpty())
        return;
    QObject* const updater = objectOfPages(*m_window, "updater");
    call({Step::Updates}, [&] {
        QMetaObject::invokeMethod(updater, "checkVersion", Q_ARG(QString, m_options.updateUrl),
                                  Q_ARG(QString, m_options.updateToken), Q_ARG(QString, m_options.product));
    });
    const QString version = updater->property("latestVersion").toString();
    if (version.isEmpty())
        explainFailedUpdates();
    else
        judgeRelease(QStringLiteral("offers %1 %2").arg(m_options.product, version));
}

//! A release fails if its package cannot be downloaded. The plug-in does not provide the package's address.
void Walk::judgeRelease(const QString& offer)
{
    m_judge.setWell(Step::Updates, offer);
    const QJsonObject release =
        QJsonDocument::fromJson(askForRelease().body).object().value(QStringLiteral("data")).toObject();
    const QUrl package(release.value(QStringLiteral("fullPath")).toString());
    const DirectAnswer answer = askForHead(package);
    if (answer.error.isEmpty())
        return;
    const QString reason =
        answer.status >= 400 ? httpErrorWords(answer.status, answer.error, package) : explain(answer.error);
    m_judge.setWrong(Step::Updates, m_redaction.redacted(QStringLiteral("%1, but not its package \"%2\": %3")
                                                             .arg(offer, package.toString(),
                                                                  reason.isEmpty() ? answer.error : reason)));
    m_findings.of(Step::Updates).askedDirectly = true;
}

DirectAnswer Walk::askForRelease() const
{
    const QString question = QStringLiteral("%1%2?access_token=%3&productId=%4&productVersion=0.0.0")
                                 .arg(m_options.updateUrl, QLatin1String(infoOf(Step::Updates).path),
                                      m_options.updateToken, m_options.product);
    return askDirectly(QUrl(question), QJsonDocument(QJsonObject()).toJson());
}

//! The plug-in does not distinguish a failed check from a check without a newer release.
void Walk::explainFailedUpdates()
{
    const auto exchange = m_judge.exchangeOf(Step::Updates);
    if (!exchange || !exchange->isFinished) {
        m_judge.setWrong(Step::Updates,
                         QStringLiteral("no answer within the 30 s that the plug-in waits for it"));
        return;
    }
    if (!exchange->error.isEmpty()) {
        m_judge.setFailed(Step::Updates, exchange->error);
        return;
    }
    m_judge.setFailed(Step::Updates, {});
    const DirectAnswer answer = askForRelease();
    const QString fault =
        m_redaction.redacted(answer.error.isEmpty() ? releaseFault(answer.body) : answer.error);
    Finding& finding = m_findings.of(Step::Updates);
    finding.askedDirectly = true;
    finding.words =
        fault.isEmpty() ? QStringLiteral("no answer for the plug-in, but one when asked again") : fault;
}

//! The plug-in signs out by itself when the application ends.
void Walk::signOut()
{
    const auto exchange = m_judge.exchangeOf(Step::SignOut);
    // Without a sign-in it has no address for that.
    if (exchange && !exchange->url.host().isEmpty())
        m_judge.judge(Step::SignOut);
}

void Walk::call(const QVector<Step>& steps, const std::function<void()>& function)
{
    m_underWay = steps;
    m_judge.beginCall();
    function();
    m_underWay.clear();
}

} // namespace NelvoDevkit
