#pragma once

#include <NelvoSDK/IProjectInfoMgr.h>
#include <NelvoSDK/LoginSession.h>

#include <QStringList>

#include <functional>

//! \brief A project manager with a simulated service. Records the host's calls.
class ProjectInfoStandIn final : public NelvoSDK::IProjectInfoMgr
{
public:
    QStringList calls;
    //! The session of the last ReflushProjOrgInfo, and the plug-in of the last SetPlugin.
    NelvoSDK::LoginSession session;
    NelvoSDK::INelvoSDKPlugin* plugin = nullptr;

    //! The data of the service. Each ReflushProjOrgInfo appends these units to the tree.
    QString rootName;
    QStringList firstLevel;
    std::list<NelvoSDK::ProjectNode> serverProjects;
    bool answers = true;
    //! Called by OnUploadProject as the effect of a successful upload.
    std::function<void(const NelvoSDK::ProjectNode&)> upload;
    //! Called while an operation would wait for the service and process the host's events.
    std::function<void()> whileBlocking;

    //! Local projects that were added and not removed or uploaded since.
    std::map<std::wstring, NelvoSDK::ProjectRef> announced;
    QMap<QString, QString> bindings;

    void ReflushProjOrgInfo(const NelvoSDK::LoginSession& newSession) override
    {
        session = newSession;
        block("ReflushProjOrgInfo");
        for (const QString& name : firstLevel) {
            NelvoSDK::OrgTreeNode unit;
            unit.id = unit.name = name.toStdWString();
            unit.canSelect = true;
            m_root.children.push_back(unit);
        }
        m_root.id = m_root.name = rootName.toStdWString();
    }
    void Shutdown() override {}
    NelvoSDK::INelvoSDKPlugin* GetPlugin() override { return plugin; }
    void SetPlugin(NelvoSDK::INelvoSDKPlugin* newPlugin) override
    {
        note("SetPlugin");
        plugin = newPlugin;
    }
    bool GetServerProjectTree(std::list<NelvoSDK::ProjectNode>& projects) override
    {
        block("GetServerProjectTree");
        if (answers)
            projects.insert(projects.end(), serverProjects.begin(), serverProjects.end());
        return answers;
    }
    bool GetOrgTree(NelvoSDK::OrgTreeNode& root) override
    {
        root = m_root;
        return true;
    }
    void RemoveForeignProjects(std::list<NelvoSDK::ProjectRef>& projects) override
    {
        note("RemoveForeignProjects");
        projects.remove_if([this](const NelvoSDK::ProjectRef& project) {
            return project.attrs.at(L"epId") != session.extra.at(L"epId");
        });
    }
    void GetProjectInfo(const std::wstring id, NelvoSDK::ProjectRef& project) override
    {
        for (const NelvoSDK::ProjectNode& known : serverProjects) {
            if (known.id == id)
                project.id = id;
        }
        if (announced.count(id) > 0)
            project.id = id;
        if (project.id.empty())
            return;
        project.attrs[L"epId"] = session.extra.at(L"epId");
        project.attrs[L"epName"] = session.extra.at(L"epName");
    }
    void AddLocalProject(const NelvoSDK::ProjectRef& project) override
    {
        note("AddLocalProject " + QString::fromStdWString(project.name));
        announced.emplace(project.id, project);
    }
    void RemoveLocalProject(const std::wstring id) override
    {
        note("RemoveLocalProject");
        announced.erase(id);
    }
    void OnUploadProject(const NelvoSDK::ProjectNode& project, void* /*reserved*/, bool really) override
    {
        block("OnUploadProject " + QString::fromStdWString(project.name) + (really ? "" : " not really"));
        announced.erase(project.id);
        if (upload)
            upload(project);
    }
    void OnUploadSdkProperty(const QString& sceneProjId, const QMap<QString, QString>& serials) override
    {
        block("OnUploadSdkProperty " + sceneProjId);
        bindings = serials;
    }
    void ReservedFirst() override {}
    void ReservedSecond() override {}

private:
    void note(const QString& call)
    {
        if (m_depth > 0)
            qFatal("the host calls %s inside another call", qPrintable(call));
        calls.append(call);
    }
    void block(const QString& call)
    {
        note(call);
        ++m_depth;
        if (whileBlocking)
            whileBlocking();
        --m_depth;
    }

    NelvoSDK::OrgTreeNode m_root;
    int m_depth = 0;
};
