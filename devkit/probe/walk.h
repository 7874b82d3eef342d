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

//! \brief Walks through the services by the plug-in, as a user at its window and its host would, and finds
//! out what becomes of each step.
//!
//! Calls what the pages of the login window call, which is never shown. Needs a QGuiApplication; GUI thread
//! only. One in a process, since a second sign-in gets no cookies.
class Walk final : private NelvoSDK::ILoginObserver, private NelvoSDK::IPdsObserver
{
public:
    //! What is secret goes into `redaction`. Neither is owned.
    Walk(ProbeOptions options, Findings& findings, Redaction& redaction);

    //! All steps but the last. Call it from the event loop. Blocks without a time limit while it pumps
    //! events.
    void run();
    //! The last one, which the plug-in takes at the end of the application. Call it when the event loop has
    //! ended.
    void finish();
    //! Notes that what is under way has not answered in time. The process has to end then: the plug-in's
    //! calls have no time limit, and nothing else ends them.
    void interrupt();

    const Trace& trace() const { return m_trace; }
    //! Empty if it could not be loaded.
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

    //! Calls the plug-in, which makes the requests of these steps.
    void call(const QVector<Step>& steps, const std::function<void()>& function);

    ProbeOptions m_options;
    Findings& m_findings;
    Redaction& m_redaction;
    Trace m_trace;
    Judge m_judge;
    NelvoSDK::INelvoSDKPlugin* m_plugin = nullptr;
    //! The login window: what its pages call hangs on it.
    QQuickView* m_window = nullptr;
    QJsonArray m_companies;
    QString m_enterpriseId;
    QString m_enterpriseName;
    NelvoSDK::LoginSession m_session;
    //! The steps of the call that is under way.
    QVector<Step> m_underWay;
    std::function<void()> m_whenListSynced;
};

} // namespace NelvoDevkit
