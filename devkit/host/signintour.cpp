#include "host/signintour.h"

#include "host/toursimulator.h"
#include "host/visitor.h"

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

//! An address on this machine where nobody listens.
QString deadAddress()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort());
}

} // namespace

SignInTour::SignInTour(Visitor& visitor, const TourSimulator& simulator)
    : m_visitor(visitor), m_simulator(simulator)
{}

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
    m_visitor.arriveAt(station);
    (this->*what)();
}

void SignInTour::emptyForm()
{
    const QQuickItem* const form = m_visitor.awaitItem(QStringLiteral("loginComp"));
    m_visitor.awaitText(QStringLiteral("addressBox"), "outText", m_simulator.signInUrl());
    m_visitor.awaitText(QStringLiteral("userNameBox"), "outText", {});
    m_visitor.awaitText(QStringLiteral("passwordField"), "text", {});
    m_visitor.takePicture(form->window());
}

void SignInTour::typing()
{
    m_visitor.fill(QStringLiteral("userNameBox"), "outText", m_many.user);
    m_visitor.fill(QStringLiteral("passwordField"), "text", m_many.password);
    m_visitor.takePicture(m_visitor.awaitItem(QStringLiteral("loginComp"))->window());
}

void SignInTour::emptyPassword()
{
    m_visitor.fill(QStringLiteral("passwordField"), "text", {});
    expectRefusal(QStringLiteral("用户名或密码输入为空！"));
}

void SignInTour::addressWithoutScheme()
{
    m_visitor.fill(QStringLiteral("passwordField"), "text", m_many.password);
    m_visitor.fill(QStringLiteral("addressBox"), "outText", QStringLiteral("127.0.0.1:8100"));
    expectRefusal(QStringLiteral("Editor 地址错误！"));
}

void SignInTour::unreachableAddress()
{
    m_visitor.fill(QStringLiteral("addressBox"), "outText", deadAddress());
    expectRefusal(QStringLiteral("Connection refused"));
}

void SignInTour::wrongPassword()
{
    m_visitor.fill(QStringLiteral("addressBox"), "outText", m_simulator.signInUrl());
    m_visitor.fill(QStringLiteral("passwordField"), "text", QStringLiteral("not-the-password"));
    expectRefusal(QStringLiteral("read compList failed"));
}

void SignInTour::enterpriseChoice()
{
    m_visitor.fill(QStringLiteral("passwordField"), "text", m_many.password);
    m_visitor.click(QStringLiteral("keepPassword"));
    m_visitor.await([] { return visibleItem(QStringLiteral("keepPassword"))->property("checked").toBool(); },
                    QStringLiteral("the checked box"));
    m_visitor.click(QStringLiteral("loginButton"));
    m_visitor.await([] { return visibleItems(QStringLiteral("companyRow")).size() > 1; },
                    QStringLiteral("the enterprises"));
    m_visitor.takePicture(m_visitor.awaitItem(QStringLiteral("applistComp"))->window());
}

void SignInTour::chosenRow()
{
    QQuickItem* row = nullptr;
    QMetaObject::invokeMethod(m_visitor.awaitItem(QStringLiteral("companyList")), "itemAtIndex",
                              Q_RETURN_ARG(QQuickItem*, row), Q_ARG(int, m_many.enterpriseRow));
    m_visitor.require(row != nullptr, QStringLiteral("enough rows"));
    m_visitor.click(row);
    m_visitor.await([row] { return row->property("selected").toBool(); }, QStringLiteral("the selected row"));
    m_visitor.takePicture(row->window());
}

void SignInTour::progress()
{
    m_visitor.click(QStringLiteral("confirmButton"));
    const QQuickItem* const bar = m_visitor.awaitItem(QStringLiteral("progress"));
    m_visitor.await([bar] { return bar->property("value").toDouble() > 0.35; },
                    QStringLiteral("the bar past a third"));
    // Rendered at once and not grabbed: the page would go on while the screen catches up.
    m_visitor.save(bar->window()->grabWindow());
}

void SignInTour::hostWindow()
{
    m_visitor.awaitText(QStringLiteral("enterprise"), "text", m_many.enterprise);
    m_visitor.require(!visibleItem(QStringLiteral("contentLoader")),
                      QStringLiteral("the login window closed"));
    QStringList values;
    for (const QQuickItem* item : visibleItems(QStringLiteral("sessionValue")))
        values += item->property("text").toString();
    m_visitor.require(values.contains(m_many.enterprise), QStringLiteral("the enterprise in the session"));
    createLocalProject();
    m_visitor.awaitNewestLine();
    m_visitor.takePicture(m_visitor.awaitItem(QStringLiteral("enterprise"))->window());
}

//! It belongs to this enterprise and has to go when another one is entered.
void SignInTour::createLocalProject()
{
    m_visitor.click(QStringLiteral("orgUnit"), "unitName", QStringLiteral("水文监测处"));
    m_visitor.fill(QStringLiteral("newName"), "text", ForeignProject);
    m_visitor.press(QStringLiteral("createButton"));
    m_visitor.awaitItemWith(QStringLiteral("project"), "projectName", ForeignProject);
}

void SignInTour::signedOut()
{
    m_visitor.click(QStringLiteral("signOutButton"));
    const QQuickItem* const form = m_visitor.awaitItem(QStringLiteral("loginComp"));
    m_visitor.awaitText(QStringLiteral("userNameBox"), "outText", m_many.user);
    m_visitor.awaitText(QStringLiteral("passwordField"), "text", m_many.password);
    m_visitor.awaitText(QStringLiteral("addressBox"), "outText", m_simulator.signInUrl());
    m_visitor.await([] { return !visibleItem(QStringLiteral("enterprise")); },
                    QStringLiteral("the host's window hidden"));
    m_visitor.takePicture(form->window());
}

void SignInTour::keyboardOnly()
{
    QQuickWindow* const window = m_visitor.awaitItem(QStringLiteral("loginComp"))->window();
    m_visitor.focusByTab(window, QStringLiteral("userNameBox"));
    m_visitor.type(window, m_single.user);
    m_visitor.awaitText(QStringLiteral("userNameBox"), "outText", m_single.user);
    m_visitor.focusByTab(window, QStringLiteral("passwordField"));
    m_visitor.type(window, m_single.password);
    m_visitor.awaitText(QStringLiteral("passwordField"), "text", m_single.password);
    QTest::keyClick(window, Qt::Key_Return);
    m_visitor.awaitText(QStringLiteral("enterprise"), "text", m_single.enterprise);
    m_visitor.takePicture(m_visitor.awaitItem(QStringLiteral("enterprise"))->window());
}

void SignInTour::log()
{
    const QQuickItem* const list = m_visitor.awaitItem(QStringLiteral("logList"));
    const auto* const model = list->property("model").value<QAbstractItemModel*>();
    const auto count = [model](const QString& start) {
        return model->match(model->index(0, 0), Qt::DisplayRole, start, -1, Qt::MatchStartsWith).size();
    };
    m_visitor.await([&] { return count(QStringLiteral("ILoginObserver::OnLoginSucceeded")) == 2; },
                    QStringLiteral("two successes in the log"));
    // The unreachable address and the wrong password; what the form itself refuses is no attempt.
    m_visitor.await([&] { return count(QStringLiteral("ILoginObserver::OnLoginFailed")) == 2; },
                    QStringLiteral("two failures in the log"));
    const QString dropped =
        QStringLiteral("IProjectInfoMgr::RemoveForeignProjects: \"%1\"").arg(ForeignProject);
    m_visitor.await([&] { return count(dropped) == 1; },
                    QStringLiteral("the other enterprise's project gone"));
    m_visitor.awaitNewestLine();
    m_visitor.takePicture(list->window());
}

void SignInTour::observerCalls()
{
    m_visitor.click(QStringLiteral("logFilter1"));
    const QQuickItem* const list = m_visitor.awaitItem(QStringLiteral("logList"));
    // Two failures; and of each success the call itself, the question for the web channel, and the list.
    m_visitor.await([list] { return list->property("count").toInt() == 8; },
                    QStringLiteral("the eight calls alone"));
    m_visitor.click(QStringLiteral("copyButton"));
    m_visitor.await(
        [] {
            const QString text = QGuiApplication::clipboard()->text();
            return text.count(QLatin1Char('\n')) == 8 && text.contains(QLatin1String("OnLoginSucceeded"));
        },
        QStringLiteral("the eight calls on the clipboard"));
    m_visitor.takePicture(list->window());
}

//! Presses the button and waits for `message`. The line hides itself after a moment: on a busy machine
//! perhaps before it is pictured, and then the button is pressed once more.
void SignInTour::expectRefusal(const QString& message) const
{
    const auto shown = [] { return visibleItem(QStringLiteral("errorItem")) != nullptr; };
    for (int attempt = 0; attempt < 5; ++attempt) {
        m_visitor.await([&] { return !shown(); }, QStringLiteral("the error line hidden again"));
        m_visitor.click(QStringLiteral("loginButton"));
        m_visitor.awaitText(QStringLiteral("errorItem"), "text", message);
        m_visitor.takePicture(m_visitor.awaitItem(QStringLiteral("loginComp"))->window());
        if (shown())
            return;
    }
    m_visitor.require(false, QStringLiteral("the error line on a picture"));
}

} // namespace NelvoDevkit
