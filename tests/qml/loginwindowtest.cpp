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
    m_log = std::make_unique<TestSupport::MessageLog>();
    m_loginCtrl = std::make_unique<LoginCtrl>();
    m_view = std::make_unique<QQuickView>();
}

void LoginWindowTest::cleanup()
{
    m_view.reset();
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings, QStringList());
}

void LoginWindowTest::load(const QString& defaultUrl)
{
    QQmlContext* context = m_view->rootContext();
    context->setContextProperty(QStringLiteral("loginCtrl"), m_loginCtrl.get());
    context->setContextProperty(QStringLiteral("defaultUrl"), defaultUrl);
    context->setContextProperty(QStringLiteral("view"), m_view.get());
    m_view->setFlag(Qt::FramelessWindowHint);
    m_view->setResizeMode(QQuickView::SizeViewToRootObject);
    m_view->setSource(QUrl(QStringLiteral("qrc:/NelvoPlugin/qmls/Main.qml")));
    m_view->show();
    m_view->requestActivate();
    QVERIFY(m_view->rootObject());
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
}

QQuickItem* LoginWindowTest::item(const char* objectName) const
{
    return m_view->rootObject()->findChild<QQuickItem*>(QString::fromLatin1(objectName));
}
