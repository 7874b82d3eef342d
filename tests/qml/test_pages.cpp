#include "login/tools.h"
#include "tests/qml/standins.h"
#include "tests/support/updaterstandin.h"
#include "tests/support/warninglog.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

//! \brief Sets the context properties that the pages use.
class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    //! Changes the default font, so that a text without a font of its own differs from the others.
    void applicationAvailable()
    {
        QFont font(QStringLiteral("serif"));
        font.setPixelSize(21);
        QGuiApplication::setFont(font);
    }
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        qmlRegisterType<CTools>("PercentTools", 1, 0, "PercentTools");
        QQmlContext* context = engine->rootContext();
        context->setContextProperty(QStringLiteral("loginCtrl"), &m_loginCtrl);
        context->setContextProperty(QStringLiteral("updater"), &m_updater);
        context->setContextProperty(QStringLiteral("defaultUrl"), QStringLiteral("http://default"));
        context->setContextProperty(QStringLiteral("view"), &m_view);
        context->setContextProperty(QStringLiteral("warningLog"), &m_warnings);
    }

private:
    LoginCtrl m_loginCtrl;
    TestSupport::UpdaterStandIn m_updater;
    WindowStandIn m_view;
    TestSupport::WarningLog m_warnings;
};

QUICK_TEST_MAIN_WITH_SETUP(pages, Setup)

#include "test_pages.moc"
