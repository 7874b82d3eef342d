#include "fuzz/support.h"
#include "project/projectinfomgr.h"

#include <NelvoSDK/RecordKeys.h>

namespace RecordKeys = NelvoSDK::RecordKeys;

//! The organisation tree and the list of scene projects; each input is used as both.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray body = Fuzz::bytesOf(data, size);
    Fuzz::Network network;
    network.answer("/org/tree", {body});
    network.answer("/scene/project", {body});

    NelvoSDK::LoginSession session;
    session.sdkAddr = L"http://editor";
    session.extra[RecordKeys::EpId] = L"1001";
    session.extra[RecordKeys::EpName] = L"Enterprise";
    NelvoPlugin::CProjectInfoMgr manager;
    manager.ReflushProjOrgInfo(session);
    NelvoSDK::OrgTreeNode root;
    manager.GetOrgTree(root);

    std::list<NelvoSDK::ProjectNode> projects;
    manager.GetServerProjectTree(projects);
    for (NelvoSDK::ProjectNode& project : projects) {
        NelvoSDK::ProjectRef known;
        manager.GetProjectInfo(project.id, known);
        Fuzz::require(known.id == project.id && known.name == project.name);
        manager.OnUploadSdkProperty(QString::fromStdWString(project.id), {});
        project.name += L" (2)";
        manager.OnUploadProject(project, nullptr, true);
    }
    return 0;
}
