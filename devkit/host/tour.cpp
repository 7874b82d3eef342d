#include "host/tour.h"

#include <QAbstractItemModel>
#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPixmap>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QTcpServer>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <functional>
#include <iostream>
#include <utility>

namespace NelvoDevkit {

namespace {

constexpr int PatienceMs = 30000;

//! An account of the simulator.
struct Account {
    QString user;
    QString password;
    //! Name of the enterprise that the tour enters with it, and its place in the list.
    QString enterprise;
    int enterpriseRow;
};

//! What was not as it should be at a station.
class Missed
{
public:
    explicit Missed(QString what) : m_what(std::move(what)) {}
    const QString& what() const { return m_what; }

private:
    QString m_what;
};

void collect(QQuickItem* item, const QString& name, QList<QQuickItem*>& found)
{
    if (!item->isVisible())
        return;
    if (item->objectName() == name)
        found.append(item);
    for (QQuickItem* child : item->childItems())
        collect(child, name, found);
}

//! The visible items of that name in all visible windows.
QList<QQuickItem*> visibleItems(const QString& name)
{
    QList<QQuickItem*> found;
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        auto* const quickWindow = qobject_cast<QQuickWindow*>(window);
        if (quickWindow && quickWindow->isVisible())
            collect(quickWindow->contentItem(), name, found);
    }
    return found;
}

QQuickItem* visibleItem(const QString& name)
{
    return visibleItems(name).value(0);
}

//! An address on this machine where nobody listens.
QString deadAddress()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort());
}

class Tour
{
public:
    Tour(const QString& pictures, const QString& servicesFile);

    //! All stations in turn. True if the last one was reached.
    bool walk();

private:
    void emptyForm();
    void typing();
    void emptyPassword();
    void addressWithoutScheme();
    void unreachableAddress();
    void wrongPassword();
    void enterpriseChoice();
    void chosenRow();
    void progress();
    void hostWindow();
    void signedOut();
    void keyboardOnly();
    void log();
    void observerCalls();
    void closing();

    void visit(const QString& station, void (Tour::*what)());
    void readServices(const QString& file);

    void require(bool reached, const QString& what) const;
    void await(const std::function<bool()>& condition, const QString& what) const;
    QQuickItem* awaitItem(const QString& name) const;
    void awaitText(const QString& item, const char* property, const QString& text) const;
    void awaitNewestLine() const;
    void click(QQuickItem* item) const;
    void click(const QString& item) const;
    void type(QQuickWindow* window, const QString& text) const;
    void fill(const QString& field, const char* property, const QString& text) const;
    void focusByTab(QQuickWindow* window, const QString& field) const;
    void expectRefusal(const QString& message) const;

    void takePicture(QQuickWindow* window) const;
    void save(const QImage& picture) const;

    const QDir m_pictures;
    const QString m_servicesFile;
    QString m_signInUrl;
    QString m_station;

    const Account m_many{QStringLiteral("lina"), QStringLiteral("lina2024"), QStringLiteral("江南水利工程局"),
                         2};
    const Account m_single{QStringLiteral("zhangwei"), QStringLiteral("123456"),
                           QStringLiteral("远景建筑设计研究院"), 0};
};

Tour::Tour(const QString& pictures, const QString& servicesFile)
    : m_pictures(pictures), m_servicesFile(servicesFile)
{}

bool Tour::walk()
{
    try {
        visit(QStringLiteral("01-login-window"), &Tour::emptyForm);
        visit(QStringLiteral("02-typing"), &Tour::typing);
        visit(QStringLiteral("03-empty-password"), &Tour::emptyPassword);
        visit(QStringLiteral("04-address-without-scheme"), &Tour::addressWithoutScheme);
        visit(QStringLiteral("05-unreachable-address"), &Tour::unreachableAddress);
        visit(QStringLiteral("06-wrong-password"), &Tour::wrongPassword);
        visit(QStringLiteral("07-enterprise-choice"), &Tour::enterpriseChoice);
        visit(QStringLiteral("08-chosen-enterprise"), &Tour::chosenRow);
        visit(QStringLiteral("09-progress"), &Tour::progress);
        visit(QStringLiteral("10-host-window"), &Tour::hostWindow);
        visit(QStringLiteral("11-signed-out"), &Tour::signedOut);
        visit(QStringLiteral("12-keyboard-only"), &Tour::keyboardOnly);
        visit(QStringLiteral("13-log"), &Tour::log);
        visit(QStringLiteral("14-observer-calls"), &Tour::observerCalls);
        visit(QStringLiteral("15-closing"), &Tour::closing);
    } catch (const Missed& missed) {
        std::cout << "MISSED: " << missed.what().toStdString() << std::endl;
        return false;
    }
    return true;
}

void Tour::visit(const QString& station, void (Tour::*what)())
{
    m_station = station;
    std::cout << "tour: " << qPrintable(station) << std::endl;
    (this->*what)();
}

void Tour::emptyForm()
{
    readServices(m_servicesFile);
    require(m_pictures.mkpath(QStringLiteral(".")), QStringLiteral("the folder for the pictures"));
    const QQuickItem* const form = awaitItem(QStringLiteral("loginComp"));
    awaitText(QStringLiteral("addressBox"), "outText", m_signInUrl);
    awaitText(QStringLiteral("userNameBox"), "outText", {});
    awaitText(QStringLiteral("passwordField"), "text", {});
    takePicture(form->window());
}

void Tour::typing()
{
    fill(QStringLiteral("userNameBox"), "outText", m_many.user);
    fill(QStringLiteral("passwordField"), "text", m_many.password);
    takePicture(awaitItem(QStringLiteral("loginComp"))->window());
}

void Tour::emptyPassword()
{
    fill(QStringLiteral("passwordField"), "text", {});
    expectRefusal(QStringLiteral("用户名或密码输入为空！"));
}

void Tour::addressWithoutScheme()
{
    fill(QStringLiteral("passwordField"), "text", m_many.password);
    fill(QStringLiteral("addressBox"), "outText", QStringLiteral("127.0.0.1:8100"));
    expectRefusal(QStringLiteral("Editor 地址错误！"));
}

void Tour::unreachableAddress()
{
    fill(QStringLiteral("addressBox"), "outText", deadAddress());
    expectRefusal(QStringLiteral("Connection refused"));
}

void Tour::wrongPassword()
{
    fill(QStringLiteral("addressBox"), "outText", m_signInUrl);
    fill(QStringLiteral("passwordField"), "text", QStringLiteral("not-the-password"));
    expectRefusal(QStringLiteral("read compList failed"));
}

void Tour::enterpriseChoice()
{
    fill(QStringLiteral("passwordField"), "text", m_many.password);
    click(QStringLiteral("keepPassword"));
    await([] { return visibleItem(QStringLiteral("keepPassword"))->property("checked").toBool(); },
          QStringLiteral("the checked box"));
    click(QStringLiteral("loginButton"));
    await([] { return visibleItems(QStringLiteral("companyRow")).size() > 1; },
          QStringLiteral("the enterprises"));
    takePicture(awaitItem(QStringLiteral("applistComp"))->window());
}

void Tour::chosenRow()
{
    QList<QQuickItem*> rows = visibleItems(QStringLiteral("companyRow"));
    std::sort(rows.begin(), rows.end(), [](QQuickItem* a, QQuickItem* b) { return a->y() < b->y(); });
    require(rows.size() > m_many.enterpriseRow, QStringLiteral("enough rows"));
    QQuickItem* const row = rows.at(m_many.enterpriseRow);
    click(row);
    await([row] { return row->property("selected").toBool(); }, QStringLiteral("the selected row"));
    takePicture(row->window());
}

void Tour::progress()
{
    click(QStringLiteral("confirmButton"));
    const QQuickItem* const bar = awaitItem(QStringLiteral("progress"));
    await([bar] { return bar->property("value").toDouble() > 0.35; }, QStringLiteral("the bar past a third"));
    // Rendered at once and not grabbed: the page would go on while the screen catches up.
    save(bar->window()->grabWindow());
}

void Tour::hostWindow()
{
    awaitText(QStringLiteral("enterprise"), "text", m_many.enterprise);
    require(!visibleItem(QStringLiteral("contentLoader")), QStringLiteral("the login window closed"));
    QStringList values;
    for (const QQuickItem* item : visibleItems(QStringLiteral("sessionValue")))
        values += item->property("text").toString();
    require(values.contains(m_many.enterprise), QStringLiteral("the enterprise in the session"));
    awaitNewestLine();
    takePicture(awaitItem(QStringLiteral("enterprise"))->window());
}

void Tour::signedOut()
{
    click(QStringLiteral("signOutButton"));
    const QQuickItem* const form = awaitItem(QStringLiteral("loginComp"));
    awaitText(QStringLiteral("userNameBox"), "outText", m_many.user);
    awaitText(QStringLiteral("passwordField"), "text", m_many.password);
    awaitText(QStringLiteral("addressBox"), "outText", m_signInUrl);
    await([] { return !visibleItem(QStringLiteral("enterprise")); },
          QStringLiteral("the host's window hidden"));
    takePicture(form->window());
}

void Tour::keyboardOnly()
{
    QQuickWindow* const window = awaitItem(QStringLiteral("loginComp"))->window();
    focusByTab(window, QStringLiteral("userNameBox"));
    type(window, m_single.user);
    awaitText(QStringLiteral("userNameBox"), "outText", m_single.user);
    focusByTab(window, QStringLiteral("passwordField"));
    type(window, m_single.password);
    awaitText(QStringLiteral("passwordField"), "text", m_single.password);
    QTest::keyClick(window, Qt::Key_Return);
    awaitText(QStringLiteral("enterprise"), "text", m_single.enterprise);
    takePicture(awaitItem(QStringLiteral("enterprise"))->window());
}

void Tour::log()
{
    const QQuickItem* const list = awaitItem(QStringLiteral("logList"));
    const auto* const model = list->property("model").value<QAbstractItemModel*>();
    const auto count = [model](const QString& start) {
        return model->match(model->index(0, 0), Qt::DisplayRole, start, -1, Qt::MatchStartsWith).size();
    };
    await([&] { return count(QStringLiteral("ILoginObserver::OnLoginSucceeded")) == 2; },
          QStringLiteral("two successes in the log"));
    // The unreachable address and the wrong password; what the form itself refuses is no attempt.
    await([&] { return count(QStringLiteral("ILoginObserver::OnLoginFailed")) == 2; },
          QStringLiteral("two failures in the log"));
    awaitNewestLine();
    takePicture(list->window());
}

void Tour::observerCalls()
{
    click(QStringLiteral("logFilter1"));
    const QQuickItem* const list = awaitItem(QStringLiteral("logList"));
    await([list] { return list->property("count").toInt() == 4; }, QStringLiteral("the four calls alone"));
    click(QStringLiteral("copyButton"));
    await(
        [] {
            const QString text = QGuiApplication::clipboard()->text();
            return text.count(QLatin1Char('\n')) == 4 && text.contains(QLatin1String("OnLoginSucceeded"));
        },
        QStringLiteral("the four calls on the clipboard"));
    takePicture(list->window());
}

void Tour::closing()
{
    awaitItem(QStringLiteral("enterprise"))->window()->close();
}

void Tour::readServices(const QString& name)
{
    QFile file(name);
    require(file.open(QIODevice::ReadOnly), QStringLiteral("the ready file ") + name);
    m_signInUrl = QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("signIn")).toString();
    require(!m_signInUrl.isEmpty(), QStringLiteral("\"signIn\" in ") + name);
}

void Tour::require(bool reached, const QString& what) const
{
    if (!reached)
        throw Missed(QStringLiteral("%1: %2").arg(m_station, what));
}

void Tour::await(const std::function<bool()>& condition, const QString& what) const
{
    require(QTest::qWaitFor(condition, PatienceMs), what);
}

QQuickItem* Tour::awaitItem(const QString& name) const
{
    await([&name] { return visibleItem(name) != nullptr; }, name);
    return visibleItem(name);
}

void Tour::awaitText(const QString& item, const char* property, const QString& text) const
{
    QString last;
    const auto asExpected = [&] {
        const QQuickItem* const found = visibleItem(item);
        last = found ? found->property(property).toString() : QStringLiteral("nothing");
        return found && last == text;
    };
    const bool reached = QTest::qWaitFor(asExpected, PatienceMs);
    require(reached, QStringLiteral("%1 shows '%2' and not '%3'").arg(item, last, text));
}

//! Waits until the log shows its end.
void Tour::awaitNewestLine() const
{
    const QQuickItem* const list = awaitItem(QStringLiteral("logList"));
    await([list] { return list->property("atYEnd").toBool(); }, QStringLiteral("the newest line in sight"));
}

void Tour::click(QQuickItem* item) const
{
    const QPoint place = item->mapToScene(item->boundingRect().center()).toPoint();
    QTest::mouseMove(item->window(), place);
    QTest::mouseClick(item->window(), Qt::LeftButton, {}, place);
}

void Tour::click(const QString& item) const
{
    click(awaitItem(item));
}

void Tour::type(QQuickWindow* window, const QString& text) const
{
    QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(window, Qt::Key_Delete);
    for (const QChar letter : text)
        QTest::keyClick(window, letter.toLatin1());
}

void Tour::fill(const QString& field, const char* property, const QString& text) const
{
    QQuickItem* const item = awaitItem(field);
    click(item);
    type(item->window(), text);
    awaitText(field, property, text);
}

void Tour::focusByTab(QQuickWindow* window, const QString& field) const
{
    // Where no window manager runs, nobody else gives a new window the keyboard.
    window->requestActivate();
    await([window] { return window->isActive(); }, QStringLiteral("the active window"));
    const QQuickItem* const item = awaitItem(field);
    for (int stops = 0; stops < 10 && !item->hasActiveFocus(); ++stops)
        QTest::keyClick(window, Qt::Key_Tab);
    require(item->hasActiveFocus(), field + QStringLiteral(" within reach of the Tab key"));
}

//! Presses the button and waits for `message`. The line hides itself after a moment: on a busy machine
//! perhaps before it is pictured, and then the button is pressed once more.
void Tour::expectRefusal(const QString& message) const
{
    const auto shown = [] { return visibleItem(QStringLiteral("errorItem")) != nullptr; };
    for (int attempt = 0; attempt < 5; ++attempt) {
        await([&] { return !shown(); }, QStringLiteral("the error line hidden again"));
        click(QStringLiteral("loginButton"));
        awaitText(QStringLiteral("errorItem"), "text", message);
        takePicture(awaitItem(QStringLiteral("loginComp"))->window());
        if (shown())
            return;
    }
    require(false, QStringLiteral("the error line on a picture"));
}

//! Saves what stands on the screen, once the window has drawn its present state.
void Tour::takePicture(QQuickWindow* window) const
{
    std::atomic<int> frames{0};
    const auto counting = QObject::connect(
        window, &QQuickWindow::frameSwapped, window, [&frames] { ++frames; }, Qt::DirectConnection);
    // The first one may have been on its way before.
    const bool drawn = QTest::qWaitFor(
        [&] {
            window->update();
            return frames >= 2;
        },
        PatienceMs);
    QObject::disconnect(counting);
    require(drawn, QStringLiteral("a drawn window"));

    const QPixmap picture = window->screen()->grabWindow(window->winId());
    save(picture.isNull() ? window->grabWindow() : picture.toImage());
}

void Tour::save(const QImage& picture) const
{
    const QString file = m_pictures.filePath(m_station + QStringLiteral(".png"));
    require(picture.save(file), QStringLiteral("the picture ") + file);
}

} // namespace

void runTour(const QString& pictures, const QString& servicesFile)
{
    if (!Tour(pictures, servicesFile).walk()) {
        QCoreApplication::exit(EXIT_FAILURE);
        return;
    }
    // Closing the host's window has to be enough.
    QTimer::singleShot(PatienceMs, QCoreApplication::instance(), [] {
        std::cout << "MISSED: 15-closing: the process ends with the host's window" << std::endl;
        QCoreApplication::exit(EXIT_FAILURE);
    });
}

} // namespace NelvoDevkit
