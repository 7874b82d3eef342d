#include "tests/e2e/pluginhost.h"
#include "tests/e2e/updatepages.h"
#include "tests/support/accounts.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "tests/support/wine.h"
#include "userinput/userinput.h"

#include <QCursor>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QtTest>

#include <algorithm>
#include <functional>

using NelvoDevkit::Fault;
using TestSupport::MessageLog;

namespace {

//! The result of a sign-in of an account with one enterprise.
enum class Outcome {
    Session,         //!< a session with editor service and token
    SessionNoToken,  //!< a session with editor service, without a token
    SessionOddToken, //!< a session with the service's reply as token
    SessionCutToken, //!< a session with a part of the token or without one
    NoEditor,        //!< a session of empty strings: no editor service
    NoCompany,       //!< the list page waits, without an entry
    Message,         //!< the form shows the message
};

struct Call {
    const char* name;
    const char* method;
    const char* path;
};

// The seven calls of a sign-in, in their order.
const Call FormPage{"form page", "GET", "/login"};
const Call FormPost{"form post", "POST", "/login"};
const Call FormResult{"form result", "GET", "/login/success"}; // the page to which an accepted form redirects
const Call Companies{"company list", "GET", "/rs/casLogin/listCompany"};
const Call Binding{"binding", "POST", "/rs/casLogin/casLogin"};
const Call Addresses{"addresses", "GET", "/rs/casLogin/serverUrl"};
const Call Token{"token", "GET", "/rs/cim/nelvo/client_token"};
const Call Heartbeat{"heartbeat", "GET", "/org/heartbeat"};

const Call VersionCheck{"version check", "POST", "/v1.0/service/sys/productVersion/findLatest"};

const auto User = QStringLiteral("zhangwei");
const QStringList NoEditorText{QStringLiteral("获取代理地址失败, 请检查服务器部署")};
const QStringList HeartbeatText{QStringLiteral("CLoginActor::onLogin getprojList /org/heartbeat falied!")};

//! \brief Counts how often the mouse moves in a window.
class MouseWatch final : public QObject
{
public:
    explicit MouseWatch(QObject* window) { window->installEventFilter(this); }
    bool eventFilter(QObject* /*window*/, QEvent* event) override
    {
        moves += event->type() == QEvent::MouseMove ? 1 : 0;
        return false;
    }

    int moves = 0;
};

} // namespace

Q_DECLARE_METATYPE(NelvoDevkit::Fault)
Q_DECLARE_METATYPE(Outcome)

//! Each of the seven requests failing in each way, in the loaded library: the result is as documented, and
//! the same process signs in normally when the service works again.
class TestE2eFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void everyCallInEveryWay_data();
    void everyCallInEveryWay();
    void stalledCallGoesOnWhenReleased_data();
    void stalledCallGoesOnWhenReleased();
    void mouseMovesDuringACall_data();
    void mouseMovesDuringACall();
    void formPageThatWouldCrashTheQuery();
    void quitWhileTheFormWaits();

private:
    void signIn();
    void expectSession(const QString& editor, const std::function<bool(const QString&)>& tokenFits);
    bool asked(const QString& path) const;

    TestSupport::StartedServices m_services;
    std::unique_ptr<E2e::PluginHost> m_host;
    QString m_message;
};

void TestE2eFaults::cleanup()
{
    m_services.clearFaults();
    m_services.clearReplies();
    m_host.reset();
}

//! Without the window: other tests use the pages, and their progress bar would take time in each row.
void TestE2eFaults::signIn()
{
    m_host->signIn(m_services.signInUrl(), User, &m_message);
}

void TestE2eFaults::expectSession(const QString& editor, const std::function<bool(const QString&)>& tokenFits)
{
    QCOMPARE(m_host->observer.failures, 0);
    QCOMPARE(m_host->observer.sessions.size(), 1);
    const NelvoSDK::LoginSession session = m_host->observer.sessions.constFirst();
    QVERIFY(session.loggedIn);
    QCOMPARE(QString::fromStdWString(session.sdkAddr), editor);
    const QString token = QString::fromStdWString(session.iotToken);
    QVERIFY2(tokenFits(token), qPrintable(token));
}

bool TestE2eFaults::asked(const QString& path) const
{
    const QVector<NelvoDevkit::LoggedRequest> requests = m_services.log().requests();
    return std::any_of(requests.begin(), requests.end(), [&path](const NelvoDevkit::LoggedRequest& request) {
        return request.path() == path.toLatin1();
    });
}

void TestE2eFaults::everyCallInEveryWay_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<int>("value");
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<QStringList>("texts"); // possible beginnings of the message, or of the debug line

    const auto row = [](const Call& call, const char* way, Fault fault, Outcome outcome,
                        const QStringList& texts = {}, int value = 0) {
        QTest::addRow("%s: %s", call.name, way) << QByteArray(call.method) << QString::fromLatin1(call.path)
                                                << fault << value << outcome << texts;
    };
    const QStringList refused{QStringLiteral("Connection refused")};
    const QStringList closed{QStringLiteral("Connection closed")};
    const QStringList transferring{QStringLiteral("Error transferring")};
    const QStringList redirects{QStringLiteral("Too many redirects")};
    const QStringList unreadable{QStringLiteral("parseLoginArgs failed")};
    const QStringList noResult{QStringLiteral("parsePostResult failed")};
    const QStringList noList{QStringLiteral("read compList failed")};

    // A body that ends too early may be an error for Qt or not: this is a race in its network thread. Without
    // the error, the body cannot be read.
    row(FormPage, "cut body", Fault::CutBody, Outcome::Message, closed + unreadable);
    // The reply to the form is a redirect without a body; the page after it can be cut.
    row(FormResult, "cut body", Fault::CutBody, Outcome::Message, closed + noResult);
    row(Companies, "cut body", Fault::CutBody, Outcome::Message, closed + noList);
    row(Binding, "cut body", Fault::CutBody, Outcome::Session);
    row(Addresses, "cut body", Fault::CutBody, Outcome::NoEditor, NoEditorText);
    row(Token, "cut body", Fault::CutBody, Outcome::SessionCutToken);
    row(Heartbeat, "cut body", Fault::CutBody, Outcome::NoEditor, HeartbeatText);

    // The form's three requests: the error of the reply is the message.
    for (const Call* call : {&FormPage, &FormPost, &Companies}) {
        row(*call, "refuse", Fault::Refuse, Outcome::Message, refused);
        row(*call, "reset", Fault::Reset, Outcome::Message, closed);
        row(*call, "status 500", Fault::Status, Outcome::Message, transferring, 500);
        row(*call, "status 404", Fault::Status, Outcome::Message, transferring, 404);
        // A redirected POST becomes a GET: it leaves the loop and receives the form instead of a result.
        row(*call, "endless redirect", Fault::EndlessRedirect, Outcome::Message,
            call == &FormPost ? noList : redirects);
        row(*call, "delay", Fault::Delay, Outcome::Session, {}, 30);
    }
    // Any well-formed page is accepted, even without a ticket.
    row(FormPage, "other page", Fault::NotJson, Outcome::Message, noList);
    row(FormPage, "JSON", Fault::WrongJson, Outcome::Message, unreadable);
    row(FormPage, "redirect", Fault::Redirect, Outcome::Session);
    row(FormPage, "lost session", Fault::LoseSession, Outcome::Session);
    row(FormPost, "other page", Fault::NotJson, Outcome::Message, noList);
    row(FormPost, "JSON", Fault::WrongJson, Outcome::Message, noResult);
    row(FormPost, "redirect", Fault::Redirect, Outcome::Message, noList);
    row(FormPost, "lost session", Fault::LoseSession, Outcome::Session);
    row(Companies, "no JSON", Fault::NotJson, Outcome::Message, noList);
    row(Companies, "other JSON", Fault::WrongJson, Outcome::NoCompany);
    row(Companies, "redirect", Fault::Redirect, Outcome::Session);
    row(Companies, "lost session", Fault::LoseSession, Outcome::Message, noList);

    // The later requests: a failure is logged, and the sign-in continues. Without the binding the service
    // provides no token.
    const auto later = [&](const Call& call, Outcome failed, const QStringList& line) {
        row(call, "refuse", Fault::Refuse, &call == &Binding ? Outcome::NoEditor : failed,
            &call == &Binding ? NoEditorText : line);
        row(call, "reset", Fault::Reset, failed, line);
        row(call, "status 500", Fault::Status, failed, line, 500);
        row(call, "status 401", Fault::Status, failed, line, 401);
        row(call, "endless redirect", Fault::EndlessRedirect, failed, line);
        row(call, "redirect", Fault::Redirect,
            &call == &Binding ? Outcome::SessionNoToken : Outcome::Session);
        row(call, "delay", Fault::Delay, Outcome::Session, {}, 30);
    };
    later(Binding, Outcome::SessionNoToken, {});
    later(Addresses, Outcome::NoEditor, NoEditorText);
    later(Token, Outcome::SessionNoToken, {});
    later(Heartbeat, Outcome::NoEditor, HeartbeatText);
    row(Binding, "no JSON", Fault::NotJson, Outcome::SessionNoToken);
    row(Binding, "other JSON", Fault::WrongJson, Outcome::Session);
    row(Binding, "lost session", Fault::LoseSession, Outcome::NoEditor, NoEditorText);
    row(Addresses, "no JSON", Fault::NotJson, Outcome::NoEditor, NoEditorText);
    row(Addresses, "other JSON", Fault::WrongJson, Outcome::NoEditor, NoEditorText);
    row(Addresses, "lost session", Fault::LoseSession, Outcome::NoEditor, NoEditorText);
    row(Token, "no JSON", Fault::NotJson, Outcome::SessionOddToken);
    row(Token, "JSON", Fault::WrongJson, Outcome::SessionOddToken);
    row(Token, "lost session", Fault::LoseSession, Outcome::SessionOddToken);
    row(Heartbeat, "no JSON", Fault::NotJson, Outcome::NoEditor, HeartbeatText);
    row(Heartbeat, "other JSON", Fault::WrongJson, Outcome::Session);
    row(Heartbeat, "lost session", Fault::LoseSession, Outcome::Session);
}

void TestE2eFaults::everyCallInEveryWay()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    QFETCH(Fault, fault);
    QFETCH(int, value);
    QFETCH(Outcome, outcome);
    QFETCH(QStringList, texts);
    if (fault == Fault::Reset && TestSupport::isUnderWine())
        QSKIP(TestSupport::ResetsGoUnnoticed);

    m_services.log().clear();
    m_services.forgetSessions();
    m_host = std::make_unique<E2e::PluginHost>(m_services.signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    m_services.addFault({fault, path, method, value, false});

    MessageLog log;
    signIn();
    QVERIFY(asked(path));
    const auto empty = [](const QString& token) { return token.isEmpty(); };
    const auto real = [](const QString& token) {
        return token.size() > 8 && !token.contains(QLatin1Char('<'));
    };
    const auto odd = [](const QString& token) {
        return token == QStringLiteral("[]") || token.contains(QLatin1Char('<')) ||
               token.contains(QLatin1Char(' '));
    };
    const auto begins = [this](const QString& text) { return m_message.startsWith(text); };
    switch (outcome) {
    case Outcome::Session:
        expectSession(m_services.editorUrl(), real);
        break;
    case Outcome::SessionNoToken:
        expectSession(m_services.editorUrl(), empty);
        break;
    case Outcome::SessionOddToken:
        expectSession(m_services.editorUrl(), odd);
        break;
    case Outcome::SessionCutToken:
        expectSession(m_services.editorUrl(), [odd](const QString& token) { return !odd(token); });
        break;
    case Outcome::NoEditor:
        expectSession({}, empty);
        QVERIFY2(log.debugs().contains(texts.first()), qPrintable(log.debugs().join(QLatin1Char('|'))));
        break;
    case Outcome::NoCompany:
        QVERIFY(m_message.isEmpty());
        QCOMPARE(m_host->observer.failures, 0);
        QVERIFY(m_host->observer.sessions.isEmpty());
        break;
    case Outcome::Message:
        QVERIFY2(std::any_of(texts.begin(), texts.end(), begins), qPrintable(m_message));
        QCOMPARE(m_host->observer.failures, 1);
        QVERIFY(m_host->observer.sessions.isEmpty());
        break;
    }

    // The same process and window with working services.
    m_services.clearFaults();
    m_host->observer.sessions.clear();
    m_host->observer.failures = 0;
    signIn();
    expectSession(m_services.editorUrl(), real);
}

void TestE2eFaults::stalledCallGoesOnWhenReleased_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    for (const Call& call : {FormPage, FormPost, Companies, Binding, Addresses, Token, Heartbeat})
        QTest::newRow(call.name) << QByteArray(call.method) << QString::fromLatin1(call.path);
}

void TestE2eFaults::stalledCallGoesOnWhenReleased()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    m_services.log().clear();
    m_services.forgetSessions();
    m_host = std::make_unique<E2e::PluginHost>(m_services.signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    m_services.addFault({Fault::Stall, path, method, 0, false});

    // The host's timers run during the whole wait.
    int ticks = 0;
    QTimer hostTimer;
    connect(&hostTimer, &QTimer::timeout, this, [&] {
        if (!asked(path) || ++ticks < 10)
            return;
        hostTimer.stop();
        QVERIFY(m_host->observer.sessions.isEmpty());
        QCOMPARE(m_host->observer.failures, 0);
        m_services.clearFaults();
    });
    hostTimer.start(2);
    MessageLog log;
    signIn();
    QCOMPARE(ticks, 10);
    expectSession(m_services.editorUrl(), [](const QString& token) { return !token.isEmpty(); });
}

void TestE2eFaults::mouseMovesDuringACall_data()
{
    QTest::addColumn<QString>("path");
    // One for each kind of wait.
    for (const Call& call : {FormPage, Addresses, VersionCheck})
        QTest::newRow(call.name) << QString::fromLatin1(call.path);
}

//! What a person does reaches the window while the service is silent.
void TestE2eFaults::mouseMovesDuringACall()
{
    QFETCH(QString, path);
    m_services.log().clear();
    m_host = std::make_unique<E2e::PluginHost>(m_services.signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    QVERIFY(UserInput::activate(m_host->window()));
    m_services.addFault({Fault::Stall, path, {}, 0, false});

    MouseWatch watch(m_host->window());
    const QPoint place = m_host->window()->geometry().center();
    const QDeadlineTimer giveUp(10000);
    int sent = 0;
    bool came = false;
    QTimer mouse;
    connect(&mouse, &QTimer::timeout, this, [&] {
        if (!asked(path)) {
            watch.moves = 0;
            return;
        }
        came = sent > 0 && watch.moves > 0;
        if (!came && !giveUp.hasExpired()) {
            // Through the system: what Qt Test sends is never held back.
            QCursor::setPos(place + QPoint(++sent % 2, 0));
            return;
        }
        mouse.stop();
        m_services.clearFaults();
    });
    mouse.start(2);
    MessageLog log;
    E2e::checkVersion(m_services.updateUrl(), QStringLiteral("token"), QStringLiteral("product"));
    signIn();
    QVERIFY(!mouse.isActive());
    QVERIFY(came);
}

void TestE2eFaults::formPageThatWouldCrashTheQuery()
{
    QByteArray page("<html>");
    for (int i = 0; i < 33000; ++i)
        page += "<n" + QByteArray::number(i) + "/>";
    m_services.setReply("GET", QStringLiteral("/login"), {200, "text/html", page + "</html>", {}});
    m_host = std::make_unique<E2e::PluginHost>(m_services.signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    MessageLog log;
    signIn();
    QCOMPARE(m_message, QStringLiteral("parseLoginArgs failed"));
    QCOMPARE(m_host->observer.failures, 1);
    QVERIFY(log.warnings().contains(QStringLiteral("query error")));

    m_services.clearReplies();
    m_host->observer.failures = 0;
    signIn();
    expectSession(m_services.editorUrl(), [](const QString& token) { return !token.isEmpty(); });
}

//! The application quits while the form page never arrives: the wait ends, and the program too.
void TestE2eFaults::quitWhileTheFormWaits()
{
    m_services.log().clear();
    m_host = std::make_unique<E2e::PluginHost>(m_services.signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    m_services.addFault({Fault::Stall, QStringLiteral("/login"), {}, 0, false});
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        if (asked(QStringLiteral("/login")))
            QCoreApplication::quit();
    });
    watch.start(2);
    QTimer::singleShot(0, this, [this] { signIn(); });
    MessageLog log;
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(m_host->observer.sessions.isEmpty());
}

E2E_MAIN(TestE2eFaults)
#include "test_e2e_faults.moc"
