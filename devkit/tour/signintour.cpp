#include "tour/signintour.h"

#include "tour/toursimulator.h"
#include "tour/uidriver.h"
#include "userinput/userinput.h"

#include <QAbstractItemModel>
#include <QClipboard>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTcpServer>
#include <QTest>

namespace NelvoDevkit {

namespace {

const auto ForeignProject = QStringLiteral("Lake gauge");

//! An address on this machine at which no program listens.
QString deadAddress()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort());
}

} // namespace

SignInTour::SignInTour(UiDriver& ui, const TourSimulator& simulator) : m_ui(ui), m_simulator(simulator) {}

void SignInTour::walk()
{
    visit(QStringLiteral("01-login-window"), &SignInTour::emptyForm);
    visit(QStringLiteral("02-typing"), &SignInTour::typing);
    visit(QStringLiteral("03-empty-password"), &SignInTour::emptyPassword);
    visit(QStringLiteral("04-address-without-scheme"), &SignInTour::addressWithoutScheme);
    visit(QStringLiteral("05-unreachable-address"), &SignInTour::unreachableAddress);
    visit(QStringLiteral("06-wrong-password"), &SignInTour::wrongPassword);
    visit(QStringLiteral("07-enterprise-choice"), &SignInTour::enterpriseChoice);
    visit(QStringLiteral("08-chosen-enterprise"), &SignInTour::chosenRow);
    visit(QStringLiteral("09-progress"), &SignInTour::progress);
    visit(QStringLiteral("10-host-window"), &SignInTour::hostWindow);
    visit(QStringLiteral("11-signed-out"), &SignInTour::signedOut);
    visit(QStringLiteral("12-keyboard-only"), &SignInTour::keyboardOnly);
    visit(QStringLiteral("13-log"), &SignInTour::log);
    visit(QStringLiteral("14-observer-calls"), &SignInTour::observerCalls);
}

void SignInTour::visit(const QString& station, void (SignInTour::*what)())
{
    m_ui.arriveAt(station);
    (this->*what)();
}

void SignInTour::emptyForm()
{
    const QQuickItem* const form = m_ui.awaitItem(QStringLiteral("loginComp"));
    m_ui.awaitText(QStringLiteral("addressBox"), "outText", m_simulator.signInUrl());
    m_ui.awaitText(QStringLiteral("userNameBox"), "outText", {});
    m_ui.awaitText(QStringLiteral("passwordField"), "text", {});
    m_ui.takePicture(form->window());
}

void SignInTour::typing()
{
    m_ui.fill(QStringLiteral("userNameBox"), "outText", m_many.user);
    m_ui.fill(QStringLiteral("passwordField"), "text", m_many.password);
    m_ui.takePicture(m_ui.awaitItem(QStringLiteral("loginComp"))->window());
}

void SignInTour::emptyPassword()
{
    m_ui.fill(QStringLiteral("passwordField"), "text", {});
    expectRefusal(QStringLiteral("用户名或密码输入为空！"));
}

void SignInTour::addressWithoutScheme()
{
    m_ui.fill(QStringLiteral("passwordField"), "text", m_many.password);
    m_ui.fill(QStringLiteral("addressBox"), "outText", QStringLiteral("127.0.0.1:8100"));
    expectRefusal(QStringLiteral("Editor 地址错误！"));
}

void SignInTour::unreachableAddress()
{
    m_ui.fill(QStringLiteral("addressBox"), "outText", deadAddress());
    expectRefusal(QStringLiteral("Connection refused"));
}

void SignInTour::wrongPassword()
{
    m_ui.fill(QStringLiteral("addressBox"), "outText", m_simulator.signInUrl());
    m_ui.fill(QStringLiteral("passwordField"), "text", QStringLiteral("not-the-password"));
    expectRefusal(QStringLiteral("read compList failed"));
}

void SignInTour::enterpriseChoice()
{
    m_ui.fill(QStringLiteral("passwordField"), "text", m_many.password);
    m_ui.click(QStringLiteral("keepPassword"));
    m_ui.await(
        [] { return UserInput::findItem(QStringLiteral("keepPassword"))->property("checked").toBool(); },
        QStringLiteral("the checked box"));
    m_ui.click(QStringLiteral("loginButton"));
    m_ui.await([] { return UserInput::findItems(QStringLiteral("companyRow")).size() > 1; },
               QStringLiteral("the enterprises"));
    m_ui.takePicture(m_ui.awaitItem(QStringLiteral("applistComp"))->window());
}

void SignInTour::chosenRow()
{
    QQuickItem* row = nullptr;
    QMetaObject::invokeMethod(m_ui.awaitItem(QStringLiteral("companyList")), "itemAtIndex",
                              Q_RETURN_ARG(QQuickItem*, row), Q_ARG(int, m_many.enterpriseRow));
    m_ui.require(row != nullptr, QStringLiteral("enough rows"));
    UserInput::click(row);
    m_ui.await([row] { return row->property("selected").toBool(); }, QStringLiteral("the selected row"));
    m_ui.takePicture(row->window());
}

void SignInTour::progress()
{
    m_ui.click(QStringLiteral("confirmButton"));
    const QQuickItem* const bar = m_ui.awaitItem(QStringLiteral("progress"));
    m_ui.await([bar] { return bar->property("value").toDouble() > 0.35; },
               QStringLiteral("the bar past a third"));
    // Grabs the window instead of the screen: the page would continue while the screen is updated.
    m_ui.save(bar->window()->grabWindow());
}

void SignInTour::hostWindow()
{
    m_ui.awaitText(QStringLiteral("enterprise"), "text", m_many.enterprise);
    m_ui.require(!UserInput::findItem(QStringLiteral("contentLoader")),
                 QStringLiteral("the login window closed"));
    QStringList values;
    for (const QQuickItem* item : UserInput::findItems(QStringLiteral("sessionValue")))
        values += item->property("text").toString();
    m_ui.require(values.contains(m_many.enterprise), QStringLiteral("the enterprise in the session"));
    createLocalProject();
    m_ui.awaitNewestLine();
    m_ui.takePicture(m_ui.awaitItem(QStringLiteral("enterprise"))->window());
}

//! The project belongs to this enterprise and must disappear when another one is entered.
void SignInTour::createLocalProject()
{
    m_ui.click(QStringLiteral("orgUnit"), "unitName", QStringLiteral("水文监测处"));
    m_ui.fill(QStringLiteral("newName"), "text", ForeignProject);
    m_ui.press(QStringLiteral("createButton"));
    m_ui.awaitItemWith(QStringLiteral("project"), "projectName", ForeignProject);
}

void SignInTour::signedOut()
{
    m_ui.click(QStringLiteral("signOutButton"));
    const QQuickItem* const form = m_ui.awaitItem(QStringLiteral("loginComp"));
    m_ui.awaitText(QStringLiteral("userNameBox"), "outText", m_many.user);
    m_ui.awaitText(QStringLiteral("passwordField"), "text", m_many.password);
    m_ui.awaitText(QStringLiteral("addressBox"), "outText", m_simulator.signInUrl());
    m_ui.await([] { return !UserInput::findItem(QStringLiteral("enterprise")); },
               QStringLiteral("the host's window hidden"));
    m_ui.focusByTab(form->window(), QStringLiteral("loginButton"));
    m_ui.takePicture(form->window());
}

void SignInTour::keyboardOnly()
{
    QQuickWindow* const window = m_ui.awaitItem(QStringLiteral("loginComp"))->window();
    m_ui.focusByTab(window, QStringLiteral("userNameBox"));
    UserInput::replaceText(window, m_single.user);
    m_ui.awaitText(QStringLiteral("userNameBox"), "outText", m_single.user);
    m_ui.focusByTab(window, QStringLiteral("passwordField"));
    UserInput::replaceText(window, m_single.password);
    m_ui.awaitText(QStringLiteral("passwordField"), "text", m_single.password);
    QTest::keyClick(window, Qt::Key_Return);
    m_ui.awaitText(QStringLiteral("enterprise"), "text", m_single.enterprise);
    m_ui.takePicture(m_ui.awaitItem(QStringLiteral("enterprise"))->window());
}

void SignInTour::log()
{
    const QQuickItem* const list = m_ui.awaitItem(QStringLiteral("logList"));
    const auto* const model = list->property("model").value<QAbstractItemModel*>();
    const auto count = [model](const QString& start) {
        return model->match(model->index(0, 0), Qt::DisplayRole, start, -1, Qt::MatchStartsWith).size();
    };
    m_ui.await([&] { return count(QStringLiteral("ILoginObserver::OnLoginSucceeded")) == 2; },
               QStringLiteral("two successes in the log"));
    // The unreachable address and the wrong password; an error that the form detects is no attempt.
    m_ui.await([&] { return count(QStringLiteral("ILoginObserver::OnLoginFailed")) == 2; },
               QStringLiteral("two failures in the log"));
    const QString dropped =
        QStringLiteral("IProjectInfoMgr::RemoveForeignProjects: \"%1\"").arg(ForeignProject);
    m_ui.await([&] { return count(dropped) == 1; }, QStringLiteral("the other enterprise's project gone"));
    m_ui.awaitNewestLine();
    m_ui.takePicture(list->window());
}

void SignInTour::observerCalls()
{
    m_ui.click(QStringLiteral("logFilter1"));
    const QQuickItem* const list = m_ui.awaitItem(QStringLiteral("logList"));
    // Two failures; and for each success the call itself, the call for the web channel, and the list.
    m_ui.await([list] { return list->property("count").toInt() == 8; },
               QStringLiteral("the eight calls alone"));
    m_ui.click(QStringLiteral("copyButton"));
    m_ui.await(
        [] {
            const QString text = QGuiApplication::clipboard()->text();
            return text.count(QLatin1Char('\n')) == 8 && text.contains(QLatin1String("OnLoginSucceeded"));
        },
        QStringLiteral("the eight calls on the clipboard"));
    m_ui.takePicture(list->window());
}

//! Presses the button and waits for `message`. The message disappears after a moment, on a busy machine
//! perhaps before the picture is taken; then the button is pressed again.
void SignInTour::expectRefusal(const QString& message) const
{
    const auto shown = [] { return UserInput::findItem(QStringLiteral("errorItem")) != nullptr; };
    for (int attempt = 0; attempt < 5; ++attempt) {
        m_ui.await([&] { return !shown(); }, QStringLiteral("the error line hidden again"));
        m_ui.click(QStringLiteral("loginButton"));
        m_ui.awaitText(QStringLiteral("errorItem"), "text", message);
        m_ui.takePicture(m_ui.awaitItem(QStringLiteral("loginComp"))->window());
        if (shown())
            return;
    }
    m_ui.require(false, QStringLiteral("the error line on a picture"));
}

} // namespace NelvoDevkit
