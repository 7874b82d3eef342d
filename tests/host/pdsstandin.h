#pragma once

#include <NelvoSDK/INelvoSDKPlugin.h>
#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IPdsObserver.h>
#include <NelvoSDK/IProjectInfoMgr.h>
#include <NelvoSDK/ProjectRecords.h>

#include <QMap>
#include <QQmlContext>
#include <QQuickItem>
#include <QStandardItemModel>
#include <QStringList>

//! \brief A BIM manager without a dialog. Records the host's calls. Tests call `observer` in place of a
//!   user's actions.
class PdsStandIn final : public NelvoSDK::IPdsMgr
{
public:
    QStringList calls;
    NelvoSDK::INelvoSDKPlugin* plugin = nullptr;
    NelvoSDK::IPdsObserver* observer = nullptr;
    //! The dialog's tree. Each InitBimData appends the tree of the project manager.
    QStandardItemModel organisation;
    QMap<QString, QString> names; //!< the models' names by GUID
    bool dialogLoads = true;

    NelvoSDK::INelvoSDKPlugin* GetPlugin() override { return plugin; }
    void SetPlugin(NelvoSDK::INelvoSDKPlugin* newPlugin) override
    {
        calls.append("SetPlugin");
        plugin = newPlugin;
    }
    void InitBimData() override
    {
        calls.append("InitBimData");
        NelvoSDK::OrgTreeNode root;
        plugin->GetProjectInfoMgr()->GetOrgTree(root);
        auto* const item = new QStandardItem(QString::fromStdWString(root.name));
        for (const NelvoSDK::OrgTreeNode& child : root.children)
            item->appendRow(new QStandardItem(QString::fromStdWString(child.name)));
        organisation.appendRow(item);
    }
    void ReservedHook() override {}
    void SetQmlContext(QQmlContext* context) override
    {
        calls.append("SetQmlContext");
        context->setContextProperty("orgModel", &organisation);
    }
    void CreateBimDialog(QQuickItem* parent) override
    {
        calls.append("CreateBimDialog");
        if (dialogLoads)
            (new QQuickItem)->setParent(parent);
    }
    void OpenBimDialog() override { calls.append("OpenBimDialog"); }
    void OpenDWGBimDialog() override { calls.append("OpenDWGBimDialog"); }
    void Attach(NelvoSDK::IPdsObserver* newObserver) override
    {
        calls.append("Attach");
        observer = newObserver;
    }
    void Detach(NelvoSDK::IPdsObserver* oldObserver) override
    {
        calls.append(oldObserver == observer ? "Detach" : "Detach a stranger");
        observer = nullptr;
    }
    std::wstring GetBimProjName(const std::wstring& guid) override
    {
        return names.value(QString::fromStdWString(guid)).toStdWString();
    }
};
