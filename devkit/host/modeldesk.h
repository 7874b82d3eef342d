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

//! \brief What the host does with BIM models: offers the plug-in's dialog and does what the user chose there.
//!
//! Call publish before the scene is loaded and createDialog after it; readModels after each sign-in. The
//! plug-in's pages know this object as `bimControl` and as `editConext`.
class ModelDesk : public QObject, private NelvoSDK::IPdsObserver
{
    Q_OBJECT
    Q_PROPERTY(NelvoDevkit::ImportedModels* models READ models CONSTANT)
    //! Whether the open project is a main project. A main project and another one have models of their own.
    Q_PROPERTY(bool isMainProject READ isMainProject WRITE setMainProject NOTIFY mainProjectChanged)
    //! Whether the dialog has something to show.
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)

public:
    //! Gives the manager its way to `plugin` and observes it. Both are not owned and live longer than the
    //! desk; `plugin` is initialised.
    ModelDesk(NelvoSDK::INelvoSDKPlugin& plugin, LogModel& log);
    ~ModelDesk() override;
    Q_DISABLE_COPY(ModelDesk)

    ImportedModels* models() { return &m_models; }
    bool isMainProject() const { return m_isMainProject; }
    void setMainProject(bool isMainProject);
    bool isReady() const { return m_ready; }

    //! Puts into the context what the pages and the host's own use. It is not owned; its engine ends before
    //! the desk.
    void publish(QQmlContext* context);
    //! Builds the dialog over that item of the scene. The item stands at its parent's origin: an open dialog
    //! goes to where the item's own position leads from there.
    void createDialog(QQuickItem* scene);
    //! Ends the dialog, if there is one. Before the scene ends: a window that takes a component's item along
    //! leaves its bindings alive, and they complain.
    void destroyDialog();
    //! Shows the organisation that the project manager has since a sign-in, and asks for the models.
    //! `earlierUnits` is how many first-level units of earlier sign-ins its tree begins with.
    void readModels(int earlierUnits);

    Q_INVOKABLE void openBimDialog();
    Q_INVOKABLE void openDwgDialog();
    //! Whether the model may be imported into a main project, or into another one: not a second time.
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
    //! The dialog's tree, which the plug-in owns and published; null before publish.
    QPointer<QAbstractItemModel> m_organisation;
    //! Belongs to the item of the scene.
    QPointer<QQuickItem> m_dialog;
    bool m_isMainProject = false;
    bool m_ready = false;
};

} // namespace NelvoDevkit
