#include "login/loginactor.h"
#include "tests/qml/loginwindowtest.h"
#include "tests/support/row.h"
#include "tests/support/updaterstandin.h"
#include "updater/updater.h"

#include <QJsonObject>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlNetworkAccessManagerFactory>
#include <QQuickItem>
#include <QtTest>

using TestSupport::row;

//! \brief The pages in a real login window with its own QML engine and without a version check.
class TestLoginWindow : public LoginWindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void loadsWithoutAVersionCheckAndWithoutAWarning();
    void windowTakesTheSizeOfTheFrame();
    void accountsSetAfterTheWindowIsShownFillTheForm();
    void emptyAccountsLeaveTheDefaultAddress();
    void withoutADefaultAddressTheFieldIsEmpty();
    void secondLoadStartsAfresh();
    void standInOffersWhatTheUpdaterOffers();
    void signInOffersNeitherDownloadNorUpgrade();
    void updatePagesOutliveTheUpdater_data();
    void updatePagesOutliveTheUpdater();
    void titleBarMovesTheWindow();
    void closeButtonClosesTheWindowAndThenQuits_data();
    void closeButtonClosesTheWindowAndThenQuits();
    void keyboardAloneSignsIn();
    void logoutPutsHttpInFrontOfWhatDoesNotStartWithIt_data();
    void logoutPutsHttpInFrontOfWhatDoesNotStartWithIt();

private:
    void setAccounts(const QJsonArray& accounts);
    QPoint centreOf(const char* objectName) const;
    void type(const QString& text);
};

namespace {

QJsonObject account(const QString& user, const QString& passwd, const QJsonArray& addresses)
{
    return {{QStringLiteral("user"), user},
            {QStringLiteral("passwd"), passwd},
            {QStringLiteral("cimUrlList"), addresses},
            {QStringLiteral("pdsUrlList"), QJsonArray()}};
}

//! \brief Creates network managers that record each requested address and never use the network.
class RecordingFactory : public QQmlNetworkAccessManagerFactory
{
public:
    QNetworkAccessManager* create(QObject* parent) override { return new Manager(requests, parent); }

    QStringList requests;

private:
    class Manager : public QNetworkAccessManager
    {
    public:
        Manager(QStringList& requests, QObject* parent) : QNetworkAccessManager(parent), m_requests(requests)
        {}

    protected:
        QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request,
                                     QIODevice* body) override
        {
            m_requests.append((operation == GetOperation ? QStringLiteral("GET ") : QString()) +
                              request.url().toString());
            return QNetworkAccessManager::createRequest(
                operation, QNetworkRequest(QUrl(QStringLiteral("data:,"))), body);
        }

    private:
        QStringList& m_requests;
    };
};

} // namespace

void TestLoginWindow::setAccounts(const QJsonArray& accounts)
{
    QVERIFY(view->rootObject()->setProperty("userInfos", QVariant(accounts)));
}

QPoint TestLoginWindow::centreOf(const char* objectName) const
{
    const QQuickItem* found = item(objectName);
    return found->mapToScene(found->boundingRect().center()).toPoint();
}

void TestLoginWindow::type(const QString& text)
{
    for (const QChar c : text)
        QTest::keyClick(view.get(), c.toLatin1());
}

void TestLoginWindow::loadsWithoutAVersionCheckAndWithoutAWarning()
{
    load();
    QVERIFY(item("loginComp"));
    QTRY_VERIFY(item("loginComp")->hasActiveFocus());
}

void TestLoginWindow::windowTakesTheSizeOfTheFrame()
{
    load();
    QTRY_COMPARE(view->size(), QSize(340, 642));
}

void TestLoginWindow::accountsSetAfterTheWindowIsShownFillTheForm()
{
    load();
    setAccounts({account(QStringLiteral("ann"), QStringLiteral("secret"),
                         {QStringLiteral("http://one"), QStringLiteral("http://two")}),
                 account(QStringLiteral("bob"), QString(), {})});

    QCOMPARE(view->rootObject()->property("userList").toStringList(),
             (QStringList{QStringLiteral("ann"), QStringLiteral("bob")}));
    QCOMPARE(item("userNameBox")->property("outText").toString(), QStringLiteral("ann"));
    QCOMPARE(item("passwordField")->property("text").toString(), QStringLiteral("secret"));
    QCOMPARE(item("keepPassword")->property("checked").toBool(), true);
    QCOMPARE(item("addressBox")->property("outText").toString(), QStringLiteral("http://one"));
    QCOMPARE(item("addressBox")->property("dropList").toStringList(),
             (QStringList{QStringLiteral("http://one"), QStringLiteral("http://two"),
                          QStringLiteral("http://default")}));
}

void TestLoginWindow::emptyAccountsLeaveTheDefaultAddress()
{
    load();
    setAccounts({});
    QCOMPARE(view->rootObject()->property("userList").toStringList(), QStringList());
    QCOMPARE(item("userNameBox")->property("outText").toString(), QString());
    QCOMPARE(item("addressBox")->property("outText").toString(), QStringLiteral("http://default"));
}

void TestLoginWindow::withoutADefaultAddressTheFieldIsEmpty()
{
    load(QString());
    QCOMPARE(item("addressBox")->property("outText").toString(), QString());
    type(QStringLiteral("eve"));
    QTRY_COMPARE(item("loginComp")->property("username").toString(), QStringLiteral("eve"));
    QCOMPARE(item("addressBox")->property("dropList").toStringList(), QStringList());
    setAccounts({account(QStringLiteral("ann"), QString(), {QStringLiteral("http://one")})});
    QCOMPARE(item("addressBox")->property("outText").toString(), QStringLiteral("http://one"));
}

void TestLoginWindow::secondLoadStartsAfresh()
{
    load();
    setAccounts({account(QStringLiteral("ann"), QStringLiteral("secret"), {})});
    load();
    QCOMPARE(item("userNameBox")->property("outText").toString(), QString());
    setAccounts({account(QStringLiteral("ann"), QStringLiteral("changed"), {})});
    QCOMPARE(item("passwordField")->property("text").toString(), QStringLiteral("changed"));
}

// The tests of the update pages use the stand-in instead of the real updater, so both must offer the same.
void TestLoginWindow::standInOffersWhatTheUpdaterOffers()
{
    const QMetaObject& real = CUpdater::staticMetaObject;
    const QMetaObject& standIn = TestSupport::UpdaterStandIn::staticMetaObject;
    int methods = 0;
    for (int index = real.methodOffset(); index < real.methodCount(); ++index) {
        const QMetaMethod method = real.method(index);
        if (method.access() != QMetaMethod::Public)
            continue;
        ++methods;
        const QByteArray signature = method.methodSignature();
        const int same = standIn.indexOfMethod(signature.constData());
        QVERIFY2(same >= 0, signature.constData());
        QCOMPARE(standIn.method(same).methodType(), method.methodType());
    }
    QCOMPARE(methods, 12 + 3);
    for (int index = real.propertyOffset(); index < real.propertyCount(); ++index) {
        const QMetaProperty property = real.property(index);
        const int same = standIn.indexOfProperty(property.name());
        QVERIFY2(same >= 0, property.name());
        QCOMPARE(standIn.property(same).userType(), property.userType());
        QCOMPARE(standIn.property(same).notifySignal().name(), property.notifySignal().name());
    }
}

// The update pages call both functions, which fail with a script error.
void TestLoginWindow::signInOffersNeitherDownloadNorUpgrade()
{
    QCOMPARE(NelvoPlugin::CLoginActor::staticMetaObject.indexOfMethod("download()"), -1);
    QCOMPARE(NelvoPlugin::CLoginActor::staticMetaObject.indexOfMethod("upgrade()"), -1);
}

void TestLoginWindow::updatePagesOutliveTheUpdater_data()
{
    QTest::addColumn<QString>("page");
    for (const char* page : {"UpdateComp", "DownloadComp", "CoverComp"})
        QTest::newRow(page) << QString::fromLatin1(page);
}

// When the host shuts down, the objects behind the pages are deleted before the window.
void TestLoginWindow::updatePagesOutliveTheUpdater()
{
    QFETCH(QString, page);
    auto updater = std::make_unique<TestSupport::UpdaterStandIn>();
    view->rootContext()->setContextProperty(QStringLiteral("updater"), updater.get());
    load();
    const QString url = QStringLiteral("qrc:/NelvoPlugin/qmls/BizComp/%1.qml").arg(page);
    QVERIFY(item("contentLoader")->setProperty("source", QUrl(url)));
    QTRY_VERIFY(item("title"));
    Q_EMIT updater->readyUpdateInfo(QStringLiteral("still here"));

    loginCtrl.reset();
    updater.reset();
    QCoreApplication::processEvents();
    QVERIFY(item("title"));
}

void TestLoginWindow::titleBarMovesTheWindow()
{
    load();
    view->setPosition(100, 100);
    QTRY_COMPARE(view->position(), QPoint(100, 100));

    const QPoint press(60, 16);
    QTest::mousePress(view.get(), Qt::LeftButton, {}, press);
    QTest::mouseMove(view.get(), press + QPoint(20, -7));
    QTRY_COMPARE(view->position(), QPoint(120, 93));
    QTest::mouseRelease(view.get(), Qt::LeftButton, {}, press);
}

void TestLoginWindow::closeButtonClosesTheWindowAndThenQuits_data()
{
    QTest::addColumn<bool>("byMouse");
    QTest::newRow("mouse") << true;
    QTest::newRow("keyboard") << false;
}

void TestLoginWindow::closeButtonClosesTheWindowAndThenQuits()
{
    QFETCH(bool, byMouse);
    load();
    bool closedBeforeQuit = false;
    QSignalSpy quits(view->engine(), &QQmlEngine::quit);
    connect(view->engine(), &QQmlEngine::quit, this, [&] { closedBeforeQuit = !view->isVisible(); });

    if (byMouse) {
        QTest::mouseClick(view.get(), Qt::LeftButton, {}, centreOf("closeButton"));
    } else {
        QTRY_VERIFY(item("loginComp")->hasActiveFocus());
        QTest::keyClick(view.get(), Qt::Key_Backtab, Qt::ShiftModifier);
        QTest::keyClick(view.get(), Qt::Key_Space);
    }
    QTRY_COMPARE(quits.count(), 1);
    QVERIFY(closedBeforeQuit);
}

void TestLoginWindow::keyboardAloneSignsIn()
{
    load();
    loginCtrl->setAppList({QJsonObject{{QStringLiteral("enterpriseId"), 7},
                                       {QStringLiteral("enterpriseName"), QStringLiteral("Acme")}}});
    QTRY_VERIFY(item("loginComp")->hasActiveFocus());

    type(QStringLiteral("ann"));
    QTest::keyClick(view.get(), Qt::Key_Tab);
    type(QStringLiteral("secret"));
    QTest::keyClick(view.get(), Qt::Key_Tab);
    type(QStringLiteral("http://here"));
    QTest::keyClick(view.get(), Qt::Key_Tab);
    QTest::keyClick(view.get(), Qt::Key_Space);
    QTest::keyClick(view.get(), Qt::Key_Return);

    QTRY_COMPARE(loginCtrl->calls().count(), 4);
    const QString user = QStringLiteral("ann");
    const QString passwd = QStringLiteral("secret");
    const QString address = QStringLiteral("http://here");
    const QVariantList expected{
        QVariantList{QStringLiteral("login"), user, passwd, address, QString()},
        QVariantList{QStringLiteral("onResetCache"), user, passwd, address, QString(), true},
        QVariantList{QStringLiteral("onLogin"), address, QStringLiteral("7"), QStringLiteral("Acme")},
        QVariantList{QStringLiteral("onShowHome")},
    };
    QCOMPARE(loginCtrl->calls(), expected);
}

void TestLoginWindow::logoutPutsHttpInFrontOfWhatDoesNotStartWithIt_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("request");
    const QString path = QStringLiteral("/v1.0/service/uc/auth/logout");
    row("http", "http://host", "GET http://host" + path);
    row("no scheme", "host", "GET http://host" + path);
    row("https", "https://host", "GET http://https//host" + path);
}

void TestLoginWindow::logoutPutsHttpInFrontOfWhatDoesNotStartWithIt()
{
    QFETCH(QString, address);
    QFETCH(QString, request);
    RecordingFactory factory;
    view->engine()->setNetworkAccessManagerFactory(&factory);
    load();
    item("addressBox")->setProperty("outText", address);
    QMetaObject::invokeMethod(item("loginComp"), "logout");
    QTRY_COMPARE(factory.requests, QStringList{request});
    view.reset();
}

QTEST_MAIN(TestLoginWindow)
#include "test_loginwindow.moc"
