#include "login/loginmgr.h"

#include "login/loginactor.h"
#include "login/logincmdlinemgr.h"
#include "login/tools.h"

#include <QCoreApplication>
#include <QQmlContext>
#include <QQmlEngine>

namespace NelvoPlugin {

CLoginMgr::CLoginMgr() : m_view(new LoginView), m_loginActor(std::make_unique<CLoginActor>(m_view.get()))
{
    // Once for each process: Qt never removes a registration.
    static const int toolsType = qmlRegisterType<CTools>("PercentTools", 1, 0, "PercentTools");
    Q_UNUSED(toolsType)
    m_view->rootContext()->setContextProperty(QStringLiteral("view"), m_view.get());
    QObject::connect(m_view->engine(), &QQmlEngine::quit, QCoreApplication::instance(),
                     &QCoreApplication::quit);
}

void* CLoginMgr::GetContext()
{
    return m_context;
}

void CLoginMgr::SetContext(void* context)
{
    m_context = context;
}

NelvoSDK::ILoginActor* CLoginMgr::GetLoginActor()
{
    return m_loginActor.get();
}

void CLoginMgr::Start()
{
    if (!m_loginActor) {
        QCoreApplication::quit();
        return;
    }
    // Exactly one argument is a sign-in from the command line, whatever it contains.
    if (QCoreApplication::arguments().size() == 2) {
        startFromCommandLine();
        return;
    }
    m_loginActor->ShowLogin();
}

void CLoginMgr::startFromCommandLine()
{
    CLoginCmdLineMgr manager;
    manager.parseCommandLine(QCoreApplication::arguments().at(1).toStdWString());
    static_cast<CLoginActor&>(*m_loginActor)
        .loginFromCommandLine(
            QString::fromStdWString(manager.m_userName), QString::fromStdWString(manager.m_password),
            QString::fromStdWString(manager.m_serverUrl), QString::number(manager.m_enterpriseId));
    manager.notifyCaller();
}

} // namespace NelvoPlugin
