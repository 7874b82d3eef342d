#include "tests/qml/loginwindowtest.h"

#include "login/tools.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QQuickItem>
#include <QtTest>

void LoginWindowTest::initTestCase()
{
    QGuiApplication::setQuitOnLastWindowClosed(false);
    qmlRegisterType<CTools>("PercentTools", 1, 0, "PercentTools");
}

void LoginWindowTest::init()
{
    log = std::make_unique<TestSupport::MessageLog>();
    loginCtrl = std::make_unique<LoginCtrl>();
    view = std::make_unique<QQuickView>();
}

void LoginWindowTest::cleanup()
{
    view.reset();
    const QStringList warnings = log->warnings();
    log.reset();
    QCOMPARE(warnings, QStringList());
}

void LoginWindowTest::load(const QString& defaultUrl)
{
    QQmlContext* context = view->rootContext();
    context->setContextProperty(QStringLiteral("loginCtrl"), loginCtrl.get());
    context->setContextProperty(QStringLiteral("defaultUrl"), defaultUrl);
    context->setContextProperty(QStringLiteral("view"), view.get());
    view->setFlag(Qt::FramelessWindowHint);
    view->setResizeMode(QQuickView::SizeViewToRootObject);
    view->setSource(QUrl(QStringLiteral("qrc:/NelvoPlugin/qmls/Main.qml")));
    view->show();
    view->requestActivate();
    QVERIFY(view->rootObject());
    QVERIFY(QTest::qWaitForWindowActive(view.get()));
}

QQuickItem* LoginWindowTest::item(const char* objectName) const
{
    return view->rootObject()->findChild<QQuickItem*>(QString::fromLatin1(objectName));
}
