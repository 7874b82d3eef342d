#include "login/loginmgr.h"
#include "login/loginview.h"
#include "tests/support/applicationfile.h"
#include "tests/support/messagelog.h"

#include <QQuickItem>
#include <QScreen>
#include <QtTest>

#include <cmath>

using NelvoPlugin::CLoginMgr;
using NelvoPlugin::fittedGeometry;
using NelvoPlugin::LoginView;
using TestSupport::ApplicationFile;

namespace {

//! With this factor, the screen of the tests is not as high as the page.
constexpr double ScaleFactor = 1.5;
constexpr QSize PageSize(340, 642);

} // namespace

//! \brief The login window on a screen that is too small for its page.
class TestLoginView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void geometryFits_data();
    void geometryFits();
    void wholePageShows();
    void pageKeepsItsOwnCoordinates();
    void everyControlIsUnderTheMouse_data();
    void everyControlIsUnderTheMouse();
    void listOpensUnderItsBox();
    void secondPageFitsToo();
    void titleBarMovesTheWindow();

private:
    void start();
    QQuickItem* item(const char* objectName) const;
    //! The item's rectangle in the window.
    QRectF place(const QQuickItem* item) const;

    std::unique_ptr<ApplicationFile> m_cache;
    std::unique_ptr<ApplicationFile> m_defaultServer;
    std::unique_ptr<ApplicationFile> m_installedVersion;
    std::unique_ptr<CLoginMgr> m_manager;
    LoginView* m_view = nullptr;
};

void TestLoginView::initTestCase()
{
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

void TestLoginView::init()
{
    const bool isCalculated = qstrcmp(QTest::currentTestFunction(), "geometryFits") == 0;
    if (!isCalculated && QGuiApplication::primaryScreen()->availableSize().height() >= PageSize.height())
        QSKIP("NELVO_SHOW selects the user's display; the test needs a screen smaller than the login window");
    m_cache = std::make_unique<ApplicationFile>(QStringLiteral("loginchache.json"));
    m_cache->write(R"([{"user": "lina"}, {"user": "tom"}])");
    m_defaultServer = std::make_unique<ApplicationFile>(QStringLiteral("defaultServerAddress.json"));
    m_defaultServer->write(R"({"defaultServer": "http://default:8080"})");
    m_installedVersion = std::make_unique<ApplicationFile>(QStringLiteral("updateConfig.json"));
    m_installedVersion->write(R"({"version": "1.0.0"})");
    m_manager = std::make_unique<CLoginMgr>();
    m_view = qobject_cast<LoginView*>(QGuiApplication::topLevelWindows().constFirst());
}

void TestLoginView::cleanup()
{
    m_manager.reset();
    m_cache.reset();
    m_defaultServer.reset();
    m_installedVersion.reset();
}

void TestLoginView::start()
{
    m_manager->Start();
    m_view->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(m_view));
}

QQuickItem* TestLoginView::item(const char* objectName) const
{
    return m_view->rootObject()->findChild<QQuickItem*>(QString::fromLatin1(objectName));
}

QRectF TestLoginView::place(const QQuickItem* item) const
{
    return item->mapRectToScene(item->boundingRect());
}

void TestLoginView::geometryFits_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QRect>("expected");
    const QRect full(0, 0, 1280, 900);
    QTest::newRow("large enough") << QPoint(470, 129) << full << QRect(QPoint(470, 129), PageSize);
    QTest::newRow("in the corner") << QPoint(940, 258) << full << QRect(QPoint(940, 258), PageSize);
    QTest::newRow("exactly as large")
        << QPoint(0, 0) << QRect(QPoint(0, 0), PageSize) << QRect(QPoint(0, 0), PageSize);
    QTest::newRow("below the edge") << QPoint(470, 300) << full << QRect(QPoint(470, 258), PageSize);
    QTest::newRow("right of the edge") << QPoint(1000, 0) << full << QRect(QPoint(940, 0), PageSize);
    QTest::newRow("under a panel") << QPoint(0, 0) << QRect(10, 30, 1270, 870)
                                   << QRect(QPoint(10, 30), PageSize);
    QTest::newRow("on a second screen")
        << QPoint(1300, 100) << QRect(1280, 0, 1280, 900) << QRect(QPoint(1300, 100), PageSize);
    QTest::newRow("half as high") << QPoint(0, 0) << QRect(0, 0, 1280, 321) << QRect(555, 0, 170, 321);
    QTest::newRow("half as wide") << QPoint(0, 0) << QRect(0, 0, 170, 900) << QRect(0, 289, 170, 321);
    QTest::newRow("lower, under a panel")
        << QPoint(50, 50) << QRect(0, 30, 1280, 321) << QRect(555, 30, 170, 321);
}

void TestLoginView::geometryFits()
{
    QFETCH(QPoint, position);
    QFETCH(QRect, available);
    QFETCH(QRect, expected);
    const QRect fitted = fittedGeometry(position, PageSize, available);
    QCOMPARE(fitted, expected);
    QVERIFY(available.contains(fitted));
}

void TestLoginView::wholePageShows()
{
    start();
    const QRect available = m_view->screen()->availableGeometry();
    QTRY_VERIFY(available.contains(m_view->geometry()));
    QCOMPARE(m_view->height(), available.height());
    const QRectF page = place(m_view->rootObject());
    QCOMPARE(page.topLeft(), QPointF(0, 0));
    QVERIFY(std::abs(page.width() - m_view->width()) < 1);
    QVERIFY(std::abs(page.height() - m_view->height()) < 1);
}

void TestLoginView::pageKeepsItsOwnCoordinates()
{
    start();
    QCOMPARE(m_view->rootObject()->size().toSize(), PageSize);
    QCOMPARE(item("loginButton")->size(), QSizeF(288, 36));
}

void TestLoginView::everyControlIsUnderTheMouse_data()
{
    QTest::addColumn<QString>("control");
    for (const char* control : {"userNameBox", "passwordField", "addressBox", "keepPassword", "loginButton"})
        QTest::newRow(control) << QString::fromLatin1(control);
}

void TestLoginView::everyControlIsUnderTheMouse()
{
    QFETCH(QString, control);
    start();
    const QRectF inWindow = place(item(control.toLatin1().constData()));
    QVERIFY(QRectF(QPointF(0, 0), m_view->size()).contains(inWindow));

    QTest::mouseClick(m_view, Qt::LeftButton, {}, inWindow.center().toPoint());
    if (control == QStringLiteral("loginButton"))
        QTRY_VERIFY(item("errorItem")->isVisible());
    else if (control == QStringLiteral("keepPassword"))
        QVERIFY(item("keepPassword")->property("checked").toBool());
    else
        QTRY_VERIFY(item(control.toLatin1().constData())->hasActiveFocus());
}

void TestLoginView::listOpensUnderItsBox()
{
    start();
    QTest::mouseClick(m_view, Qt::LeftButton, {},
                      (place(item("userNameBox")).bottomRight() - QPointF(12, 12)).toPoint());
    auto* const popup = item("userNameBox")->property("popup").value<QObject*>();
    QTRY_VERIFY(popup->property("opened").toBool());
    const auto* const list = popup->property("contentItem").value<QQuickItem*>();
    const QRectF box = place(item("userNameBox"));
    const double padding = 2 * box.width() / item("userNameBox")->width();
    QVERIFY(std::abs(place(list).left() - padding - box.left()) < 1);
    QVERIFY(std::abs(place(list).width() + 2 * padding - box.width()) < 1);
    QVERIFY(std::abs(place(list).top() - padding - box.bottom()) < 2);
}

void TestLoginView::secondPageFitsToo()
{
    start();
    m_manager->GetLoginActor()->ShowLogin();
    QCOMPARE(m_view->height(), m_view->screen()->availableGeometry().height());
    QVERIFY(std::abs(place(m_view->rootObject()).height() - m_view->height()) < 1);
}

void TestLoginView::titleBarMovesTheWindow()
{
    start();
    m_view->setPosition(100, 0);
    QTRY_COMPARE(m_view->position(), QPoint(100, 0));
    const QPoint press(60, 10);
    QTest::mousePress(m_view, Qt::LeftButton, {}, press);
    QTest::mouseMove(m_view, press + QPoint(20, 0));
    QTRY_COMPARE(m_view->position(), QPoint(120, 0));
    QTest::mouseRelease(m_view, Qt::LeftButton, {}, press);
}

int main(int argc, char* argv[])
{
    qputenv("QT_SCALE_FACTOR", QByteArray::number(ScaleFactor));
    QGuiApplication application(argc, argv);
    TestLoginView test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_loginview.moc"
