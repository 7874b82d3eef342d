#include "tests/qml/bim/standins.h"
#include "tests/support/accessibletree.h"
#include "tests/support/warninglog.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

//! \brief Sets the context properties that a host offers to the pages.
class Setup : public QObject
{
    Q_OBJECT

public:
    //! Sets the manager, or the host's `editConext`, to null in the context like a shutdown, or restores it.
    Q_INVOKABLE void offerManager(bool offered)
    {
        offer(QStringLiteral("pdsMgr"), offered ? &m_pdsMgr : nullptr);
    }
    Q_INVOKABLE void offerProject(bool offered)
    {
        offer(QStringLiteral("editConext"), offered ? &m_host : nullptr);
    }

    //! The controls of the window as assistive technology reads them: role and name.
    Q_INVOKABLE QStringList controls(QWindow* window)
    {
        QAccessible::setActive(true);
        return TestSupport::describedControls(*window);
    }
    //! Presses the first control with this role and name, like assistive technology.
    Q_INVOKABLE bool press(QWindow* window, const QString& control)
    {
        const int index = controls(window).indexOf(control);
        if (index < 0)
            return false;
        TestSupport::shownControls(*window).at(index)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
        return true;
    }

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
        QQmlContext* context = engine->rootContext();
        context->setContextProperty(QStringLiteral("setup"), this);
        context->setContextProperty(QStringLiteral("callLog"), &m_log);
        context->setContextProperty(QStringLiteral("warningLog"), &m_warnings);
        context->setContextProperty(QStringLiteral("orgModel"), &m_orgModel);
        context->setContextProperty(QStringLiteral("flatModel"), &m_flatModel);
        for (const char* name :
             {"bimControl", "editConext", "globalEditColor", "compCardData", "webViewMgr", "componentObject"})
            context->setContextProperty(QString::fromLatin1(name), &m_host);
        context->setContextProperty(QStringLiteral("appPath"), QStringLiteral("file:///opt/editor"));
        m_context = context;
        offerManager(true);
    }

private:
    void offer(const QString& name, QObject* object) { m_context->setContextProperty(name, object); }

    QQmlContext* m_context = nullptr;
    CallLog m_log;
    TestSupport::WarningLog m_warnings;
    PdsManager m_pdsMgr{m_log};
    OrgModel m_orgModel{m_log};
    FlatModel m_flatModel{m_log};
    HostContext m_host{m_log};
};

QUICK_TEST_MAIN_WITH_SETUP(bimpages, Setup)

#include "test_bimpages.moc"
