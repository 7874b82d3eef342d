#include "login/tools.h"
#include "tests/qml/standins.h"
#include "tests/support/messagelog.h"
#include "tests/support/updaterstandin.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

#include <memory>

//! \brief Lets a test see the warnings of the pages, and what else they log.
class WarningLog : public QObject
{
    Q_OBJECT

public:
    //! Begins afresh. To be called in each test, since the test library puts its own message handler in
    //! place.
    Q_INVOKABLE void start()
    {
        m_log.reset();
        m_log = std::make_unique<TestSupport::MessageLog>();
    }

    //! The warnings since the start or the last call.
    Q_INVOKABLE QStringList take()
    {
        QStringList warnings = m_log->warnings();
        m_log->clear();
        return warnings;
    }

    //! What the pages put on the console since the start or the last taking of warnings.
    Q_INVOKABLE QStringList debugs() const { return m_log->debugs(); }

    //! The last warnings; from here on messages go where they went before.
    Q_INVOKABLE QStringList finish()
    {
        QStringList warnings = take();
        m_log.reset();
        return warnings;
    }

private:
    std::unique_ptr<TestSupport::MessageLog> m_log;
};

//! \brief Gives the test cases what the pages find in their context.
class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
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
    WarningLog m_warnings;
};

QUICK_TEST_MAIN_WITH_SETUP(pages, Setup)

#include "test_pages.moc"
