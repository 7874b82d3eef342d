#pragma once

#include "host/importedmodels.h"
#include "host/logmodel.h"

#include <NelvoSDK/INelvoSDKPlugin.h>
#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IPdsObserver.h>

#include <QObject>
#include <QPointer>
#include <QQuickItem>

class QAbstractItemModel;

namespace NelvoDevkit {

//! \brief The host's part of the BIM models: opens the plug-in's dialog and runs the user's choices.
//!
//! Call publish before the scene is loaded and createDialog after it; call readModels after each sign-in. The
//! plug-in's pages know this object as `bimControl` and as `editConext`.
class ModelDesk : public QObject, private NelvoSDK::IPdsObserver
{
    Q_OBJECT
    Q_PROPERTY(NelvoDevkit::ImportedModels* models READ models CONSTANT)
    //! Whether the open project is a main project. A main project and another project have different models.
    Q_PROPERTY(bool isMainProject READ isMainProject WRITE setMainProject NOTIFY mainProjectChanged)
    //! Whether the dialog can be opened.
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)

public:
    //! Sets `plugin` in the PDS manager and observes it. Owns neither argument; both must outlive the desk.
    //! The plug-in must be initialised.
    ModelDesk(NelvoSDK::INelvoSDKPlugin& plugin, LogModel& log);
    ~ModelDesk() override;
    Q_DISABLE_COPY(ModelDesk)

    ImportedModels* models() { return &m_models; }
    bool isMainProject() const { return m_isMainProject; }
    void setMainProject(bool isMainProject);
    bool isReady() const { return m_ready; }

    //! Adds the names that the pages of the plug-in and of the host use to the context, which is not owned.
    //! Its engine must end before the desk.
    void publish(QQmlContext* context);
    //! Creates the dialog over that item of the scene. The item must be at its parent's origin: the plug-in
    //! adds the item's own position to the dialog's.
    void createDialog(QQuickItem* scene);
    //! Deletes the dialog, if it exists. Call it before the scene ends: otherwise the dialog's bindings
    //! outlive their items and log errors.
    void destroyDialog();
    //! Shows the organisation of the last sign-in and requests the models. `earlierUnits` is the number of
    //! first-level units of earlier sign-ins at the beginning of the manager's tree.
    void readModels(int earlierUnits);

    Q_INVOKABLE void openBimDialog();
    Q_INVOKABLE void openDwgDialog();
    //! Whether the model may be imported into a main project, or into another project: each model once.
    Q_INVOKABLE bool checkBimProjValid(const QString& guid, bool isMainProject);

Q_SIGNALS:
    void mainProjectChanged();
    void readyChanged();

private:
    void OnBimDialogOpened(QQuickItem* dialog) override;
    void OnBimDialogClosed(QQuickItem* dialog) override;
    void OnBimProjListCleared() override;
    void OnBimProjListSynced() override;
    void OnDownLoadBimProj(const QStringList& guids) override;
    void OnConvertSimplyMode(const QString& guid, bool completionFirst) override;

    void add(const QString& guid, ImportedModel::Kind kind);
    QString nameOf(const QString& guid);

    NelvoSDK::IPdsMgr& m_manager;
    LogModel& m_log;
    ImportedModels m_models;
    //! The dialog's tree, which the plug-in owns and publishes; null before publish.
    QPointer<QAbstractItemModel> m_organisation;
    //! Owned by the item of the scene.
    QPointer<QQuickItem> m_dialog;
    bool m_isMainProject = false;
    bool m_ready = false;
};

} // namespace NelvoDevkit
