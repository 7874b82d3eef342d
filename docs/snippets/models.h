#pragma once

#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IPdsObserver.h>

#include <QAbstractItemModel>
#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QSet>
#include <QStringList>

namespace Snippets {

//! [models-class]
class Models : public QObject, private NelvoSDK::IPdsObserver
{
    Q_OBJECT
    //! The dialog's pages read it through `editConext`.
    Q_PROPERTY(bool isMainProject MEMBER m_isMainProject NOTIFY isMainProjectChanged)

public:
    Models(NelvoSDK::IPdsMgr& manager, QQmlContext* context, QQuickItem* scene);
    //! Delete this object before its scene and before Shutdown.
    ~Models() override;
    Q_DISABLE_COPY(Models)

    //! Call it after each sign-in with the argument of Host::sessionInstalled. Closes the dialog.
    void readModels(int earlierUnits);

    //! The dialog's pages call it through `bimControl`. Returns whether the model may be imported.
    Q_INVOKABLE bool checkBimProjValid(const QString& guid, bool isMainProject);

Q_SIGNALS:
    void isMainProjectChanged();
    void importWanted(const QString& guid, const QString& name);
    void outlineWanted(const QString& guid, bool completionFirst);

private:
    void OnBimDialogOpened(QQuickItem* /*dialog*/) override {}
    void OnBimDialogClosed(QQuickItem* /*dialog*/) override {}
    void OnBimProjListCleared() override {}
    void OnBimProjListSynced() override {}
    void OnDownLoadBimProj(const QStringList& guids) override;
    void OnConvertSimplyMode(const QString& guid, bool completionFirst) override;

    void createDialog();

    NelvoSDK::IPdsMgr& m_manager;
    QQuickItem* m_scene;
    QPointer<QQuickItem> m_dialog;
    QPointer<QAbstractItemModel> m_organisation;
    QSet<QString> m_imported;
    bool m_isMainProject = true;
};
//! [models-class]

} // namespace Snippets
