#include "tests/qml/bim/standins.h"
#include "tests/support/warninglog.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

//! \brief Gives the test cases what the pages find in the host's context.
class Setup : public QObject
{
    Q_OBJECT

public:
    //! Takes the manager out of the context, as the plug-in's shutdown does, or puts it back.
    Q_INVOKABLE void offerManager(bool offered)
    {
        m_context->setContextProperty(QStringLiteral("pdsMgr"), offered ? &m_pdsMgr : nullptr);
    }

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        QQmlContext* context = engine->rootContext();
        context->setContextProperty(QStringLiteral("setup"), this);
        context->setContextProperty(QStringLiteral("callLog"), &m_log);
        context->setContextProperty(QStringLiteral("warningLog"), &m_warnings);
        context->setContextProperty(QStringLiteral("orgModel"), &m_orgModel);
        for (const char* name :
             {"bimControl", "editConext", "globalEditColor", "compCardData", "webViewMgr", "componentObject"})
            context->setContextProperty(QString::fromLatin1(name), &m_host);
        context->setContextProperty(QStringLiteral("appPath"), QStringLiteral("file:///opt/editor"));
        m_context = context;
        offerManager(true);
    }

private:
    QQmlContext* m_context = nullptr;
    CallLog m_log;
    TestSupport::WarningLog m_warnings;
    PdsManager m_pdsMgr{m_log};
    OrgModel m_orgModel{m_log};
    HostContext m_host{m_log};
};

QUICK_TEST_MAIN_WITH_SETUP(bimpages, Setup)

#include "test_bimpages.moc"
