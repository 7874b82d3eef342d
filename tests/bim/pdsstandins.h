#pragma once

#include <NelvoSDK/IHostContext.h>
#include <NelvoSDK/IPdsObserver.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <QPointer>
#include <QQuickItem>
#include <QStringList>

#include <functional>

//! \brief Records the calls of an observer of the BIM dialog.
class PdsObserver final : public NelvoSDK::IPdsObserver
{
public:
    void OnBimDialogOpened(QQuickItem* dialog) override { dialogCall(QStringLiteral("opened"), dialog); }
    void OnBimDialogClosed(QQuickItem* dialog) override { dialogCall(QStringLiteral("closed"), dialog); }
    void OnBimProjListCleared() override { call(QStringLiteral("cleared")); }
    void OnBimProjListSynced() override { call(QStringLiteral("synced")); }
    void OnDownLoadBimProj(const QStringList& guids) override
    {
        call(QStringLiteral("download %1: %2").arg(guids.size()).arg(guids.join(QLatin1Char(','))));
    }
    void OnConvertSimplyMode(const QString& guid, bool completionFirst) override
    {
        call(QStringLiteral("convert %1 %2").arg(guid).arg(completionFirst));
    }

    QStringList calls;
    //! The items in the dialog calls, and their visual parents at that time.
    QList<QQuickItem*> dialogs;
    QList<QQuickItem*> visualParents;
    //! Called with the text of each call.
    std::function<void(const QString&)> whenCalled;

private:
    void call(const QString& text)
    {
        calls.append(text);
        if (whenCalled)
            whenCalled(text);
    }

    void dialogCall(const QString& text, QQuickItem* dialog)
    {
        dialogs.append(dialog);
        visualParents.append(dialog->parentItem());
        call(text);
    }
};

//! \brief Provides an organisation tree and nothing else. Records whether the caller passes an empty root.
class ProjectInfo final : public NelvoSDK::IProjectInfoMgr
{
public:
    void ReflushProjOrgInfo(const NelvoSDK::LoginSession&) override {}
    void Shutdown() override {}
    NelvoSDK::INelvoSDKPlugin* GetPlugin() override { return nullptr; }
    void SetPlugin(NelvoSDK::INelvoSDKPlugin*) override {}
    bool GetServerProjectTree(std::list<NelvoSDK::ProjectNode>&) override { return false; }
    bool GetOrgTree(NelvoSDK::OrgTreeNode& root) override
    {
        wasAskedForEmpty = root.id.empty() && root.name.empty() && root.children.empty();
        root = tree;
        return true;
    }
    void RemoveForeignProjects(std::list<NelvoSDK::ProjectRef>&) override {}
    void GetProjectInfo(const std::wstring, NelvoSDK::ProjectRef&) override {}
    void AddLocalProject(const NelvoSDK::ProjectRef&) override {}
    void RemoveLocalProject(const std::wstring) override {}
    void OnUploadProject(const NelvoSDK::ProjectNode&, void*, bool) override {}
    void ReservedFirst() override {}
    void ReservedSecond() override {}

    NelvoSDK::OrgTreeNode tree;
    bool wasAskedForEmpty = false;
};

//! \brief A host with the web channel `channel`, or none if this is null.
class HostContext final : public NelvoSDK::IHostContext
{
public:
    QWebChannel* GetWebChannel() override { return channel; }

    QWebChannel* channel = nullptr;
};
