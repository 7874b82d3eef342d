#pragma once

#include "probe/directquestion.h"
#include "probe/findings.h"
#include "probe/judge.h"
#include "probe/probeoptions.h"
#include "probe/redaction.h"
#include "probe/trace.h"

#include <NelvoSDK/ILoginObserver.h>
#include <NelvoSDK/INelvoSDKPlugin.h>
#include <NelvoSDK/IPdsObserver.h>

#include <QJsonArray>

#include <functional>

class QObject;
class QQuickView;

namespace NelvoDevkit {

//! \brief Calls all services through the plug-in, as a user and a host do, and records the result of each
//!   step.
//!
//! Calls the functions that the pages of the login window call; the window stays hidden. Needs a
//! QGuiApplication; GUI thread only. Once in a process, because a second sign-in receives no cookies.
class Walk final : private NelvoSDK::ILoginObserver, private NelvoSDK::IPdsObserver
{
public:
    //! Adds secrets to `redaction`. Owns none of its arguments.
    Walk(ProbeOptions options, Findings& findings, Redaction& redaction);

    //! Runs all steps except the last. Call it from the event loop. Blocks without a timeout and processes
    //! events meanwhile.
    void run();
    //! Runs the last step, which the plug-in executes at the end of the application. Call it when the event
    //! loop has ended.
    void finish();
    //! Records that the running step has timed out. The process must end then: the plug-in's calls have no
    //! timeout, and nothing else ends them.
    void interrupt();

    const Trace& trace() const { return m_trace; }
    //! Empty if the plug-in could not be loaded.
    QString pluginVersion() const;

private:
    void OnLoginSucceeded(const NelvoSDK::LoginSession& session) override;
    void OnLoginFailed() override {}
    void OnBimDialogOpened(QQuickItem* /*dialog*/) override {}
    void OnBimDialogClosed(QQuickItem* /*dialog*/) override {}
    void OnBimProjListCleared() override {}
    void OnBimProjListSynced() override;
    void OnDownLoadBimProj(const QStringList& /*guids*/) override {}
    void OnConvertSimplyMode(const QString& /*guid*/, bool /*completionFirst*/) override {}

    bool loadPlugin();
    bool signIn();
    void explainRefusedSignIn();
    bool chooseEnterprise();
    bool enterEnterprise();
    void judgeSession();
    void askOrganisation();
    void askProjects();
    void askModels();
    void askModels(QObject& pages, Step step, const char* function);
    void askUpdates();
    void judgeRelease(const QString& offer);
    void explainFailedUpdates();
    DirectAnswer askForRelease() const;
    void signOut();

    //! Calls the plug-in, which sends the requests of these steps.
    void call(const QVector<Step>& steps, const std::function<void()>& function);

    ProbeOptions m_options;
    Findings& m_findings;
    Redaction& m_redaction;
    Trace m_trace;
    Judge m_judge;
    NelvoSDK::INelvoSDKPlugin* m_plugin = nullptr;
    //! The login window: its context contains the object that its pages call.
    QQuickView* m_window = nullptr;
    QJsonArray m_companies;
    QString m_enterpriseId;
    QString m_enterpriseName;
    NelvoSDK::LoginSession m_session;
    //! The steps of the running call.
    QVector<Step> m_underWay;
    std::function<void()> m_whenListSynced;
};

} // namespace NelvoDevkit
