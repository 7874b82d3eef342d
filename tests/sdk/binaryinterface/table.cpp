#include "tests/sdk/binaryinterface/table.h"

#include <NelvoSDK/IHostContext.h>
#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IMessageMgr.h>
#include <NelvoSDK/INelvoSDKPlugin.h>
#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>
#include <VLSmartDB/IVLDBDirector.h>

// ISubject contains Qt containers, so it is compared only if Qt is available.
#if __has_include(<QSet>)
#include <BVUtility/ISubject.h>
#define NELVO_TABLE_HAS_SUBJECT 1
#else
#define NELVO_TABLE_HAS_SUBJECT 0
#endif

// The table of the binary interface. Editors that were compiled with earlier headers depend on every row: if
// a row changes, they must be compiled again.

namespace BinaryInterface {

namespace {

using namespace NelvoSDK;

using Text = std::wstring;
using TextMap = std::map<std::wstring, std::wstring>;

//! Gives access to the protected member of the interface.
struct HostContextMember : INelvoSDKPlugin {
    static constexpr void* INelvoSDKPlugin::*Pointer = &HostContextMember::hostContext;
};

// A new field can fit into padding and then changes no offset and no size. These functions do not compile if
// a record has a new field.

[[maybe_unused]] void allFields(const LoginSession& record)
{
    [[maybe_unused]] const auto& [token, cookies, serverAddr, sdkAddr, epName, appVer, iotToken, loggedIn,
                                  extra] = record;
}

[[maybe_unused]] void allFields(const ProjectNode& record)
{
    [[maybe_unused]] const auto& [reservedFlag, name, id, x, y, serverFlag, code, basemap, proj4, attrs] =
        record;
}

[[maybe_unused]] void allFields(const ProjectRef& record)
{
    [[maybe_unused]] const auto& [id, name, attrs] = record;
}

[[maybe_unused]] void allFields(const OrgTreeNode& record)
{
    [[maybe_unused]] const auto& [id, name, canSelect, children] = record;
}

[[maybe_unused]] void allFields(const VLSmartDB::VLDBId& record)
{
    [[maybe_unused]] const auto& [data1, data2, data3, data4, text] = record;
}

void checkPlugin(Problems& problems)
{
    using I = INelvoSDKPlugin;
    InterfaceRow<I>("INelvoSDKPlugin", problems)
        .operation<bool()>("Initialize", &I::Initialize)
        .operation<bool()>("Shutdown", &I::Shutdown)
        .operation<void()>("ReservedHook", &I::ReservedHook)
        .operation<Text()>("GetVersion", &I::GetVersion)
        .operation<ILoginMgr*()>("GetLoginMgr", &I::GetLoginMgr)
        .operation<IProjectInfoMgr*()>("GetProjectInfoMgr", &I::GetProjectInfoMgr)
        .operation<IPdsMgr*()>("GetPdsMgr", &I::GetPdsMgr)
        .operation<IMessageMgr*()>("GetMessageMgr", &I::GetMessageMgr)
        .operation<void*()>("GetHostContext", &I::GetHostContext)
        .operation<void(void*)>("SetHostContext", &I::SetHostContext)
        .destructor()
        .field<void*>("hostContext", HostContextMember::Pointer, 1)
        .size(2);
}

void checkHostContext(Problems& problems)
{
    using I = IHostContext;
    InterfaceRow<I>("IHostContext", problems)
        .operation<void()>("ReservedFirst", &I::ReservedFirst)
        .operation<void()>("ReservedSecond", &I::ReservedSecond)
        .operation<void()>("ReservedThird", &I::ReservedThird)
        .operation<QWebChannel*()>("GetWebChannel", &I::GetWebChannel)
        .size(1);
}

void checkMessages(Problems& problems)
{
    {
        using I = IMessageMgr;
        InterfaceRow<I>("IMessageMgr", problems)
            .destructor()
            .operation<void*()>("GetContext", &I::GetContext)
            .operation<void(void*)>("SetContext", &I::SetContext)
            .operation<void(const QString&)>("NotifyFirst", &I::NotifyFirst)
            .operation<void(const QString&)>("NotifySecond", &I::NotifySecond)
            .operation<void(const QString&)>("NotifyThird", &I::NotifyThird)
            .operation<void(IMessageObserver*)>("Attach", &I::Attach)
            .operation<void(IMessageObserver*)>("Detach", &I::Detach)
            .size(1);
    }
    {
        using I = IMessageObserver;
        InterfaceRow<I>("IMessageObserver", problems)
            .operation<void()>("ReservedFirst", &I::ReservedFirst)
            .operation<void(const QString&)>("OnMessageFirst", &I::OnMessageFirst)
            .operation<void(const QString&)>("OnMessageSecond", &I::OnMessageSecond)
            .operation<void(const QString&)>("OnMessageThird", &I::OnMessageThird)
            .size(1);
    }
}

void checkLogin(Problems& problems)
{
    {
        using I = ILoginMgr;
        InterfaceRow<I>("ILoginMgr", problems)
            .operation<void*()>("GetContext", &I::GetContext)
            .operation<void(void*)>("SetContext", &I::SetContext)
            .operation<ILoginActor*()>("GetLoginActor", &I::GetLoginActor)
            .operation<void()>("Start", &I::Start)
            .destructor()
            .size(1);
    }
    {
        using I = ILoginActor;
        InterfaceRow<I>("ILoginActor", problems)
            .operation<void()>("ReservedFirst", &I::ReservedFirst)
            .operation<void()>("ReservedSecond", &I::ReservedSecond)
            .operation<bool()>("ReservedFlag", &I::ReservedFlag)
            .operation<void()>("ShowLogin", &I::ShowLogin)
            .operation<void(ILoginObserver*)>("Attach", &I::Attach)
            .operation<void(ILoginObserver*)>("Detach", &I::Detach)
            .destructor()
            .size(1);
    }
    {
        using I = ILoginObserver;
        InterfaceRow<I>("ILoginObserver", problems)
            .operation<void(const LoginSession&)>("OnLoginSucceeded", &I::OnLoginSucceeded)
            .operation<void()>("OnLoginFailed", &I::OnLoginFailed)
            .size(1);
    }
}

void checkProjects(Problems& problems)
{
    using I = IProjectInfoMgr;
    InterfaceRow<I>("IProjectInfoMgr", problems)
        .operation<void(const LoginSession&)>("ReflushProjOrgInfo", &I::ReflushProjOrgInfo)
        .operation<void()>("Shutdown", &I::Shutdown)
        .operation<INelvoSDKPlugin*()>("GetPlugin", &I::GetPlugin)
        .operation<void(INelvoSDKPlugin*)>("SetPlugin", &I::SetPlugin)
        .operation<bool(std::list<ProjectNode>&)>("GetServerProjectTree", &I::GetServerProjectTree)
        .operation<bool(OrgTreeNode&)>("GetOrgTree", &I::GetOrgTree)
        .operation<void(std::list<ProjectRef>&)>("RemoveForeignProjects", &I::RemoveForeignProjects)
        .operation<void(const Text, ProjectRef&)>("GetProjectInfo", &I::GetProjectInfo)
        .operation<void(const ProjectRef&)>("AddLocalProject", &I::AddLocalProject)
        .operation<void(const Text)>("RemoveLocalProject", &I::RemoveLocalProject)
        .operation<void(const ProjectNode&, void*, bool)>("OnUploadProject", &I::OnUploadProject)
        .operation<void(const QString&, const QMap<QString, QString>&)>("OnUploadSdkProperty",
                                                                        &I::OnUploadSdkProperty)
        .operation<void()>("ReservedFirst", &I::ReservedFirst)
        .operation<void()>("ReservedSecond", &I::ReservedSecond)
        .destructor()
        .size(1);
}

void checkPds(Problems& problems)
{
    {
        using I = IPdsMgr;
        InterfaceRow<I>("IPdsMgr", problems)
            .destructor()
            .operation<INelvoSDKPlugin*()>("GetPlugin", &I::GetPlugin)
            .operation<void(INelvoSDKPlugin*)>("SetPlugin", &I::SetPlugin)
            .operation<void()>("InitBimData", &I::InitBimData)
            .operation<void()>("ReservedHook", &I::ReservedHook)
            .operation<void(QQmlContext*)>("SetQmlContext", &I::SetQmlContext)
            .operation<void(QQuickItem*)>("CreateBimDialog", &I::CreateBimDialog)
            .operation<void()>("OpenBimDialog", &I::OpenBimDialog)
            .operation<void()>("OpenDWGBimDialog", &I::OpenDWGBimDialog)
            .operation<void(IPdsObserver*)>("Attach", &I::Attach)
            .operation<void(IPdsObserver*)>("Detach", &I::Detach)
            .operation<Text(const Text&)>("GetBimProjName", &I::GetBimProjName)
            .size(1);
    }
    {
        using I = IPdsObserver;
        InterfaceRow<I>("IPdsObserver", problems)
            .operation<void()>("ReservedFirst", &I::ReservedFirst)
            .operation<void(QQuickItem*)>("OnBimDialogOpened", &I::OnBimDialogOpened)
            .operation<void(QQuickItem*)>("OnBimDialogClosed", &I::OnBimDialogClosed)
            .operation<void()>("ReservedSecond", &I::ReservedSecond)
            .operation<void()>("ReservedThird", &I::ReservedThird)
            .operation<void()>("ReservedFourth", &I::ReservedFourth)
            .operation<void()>("ReservedFifth", &I::ReservedFifth)
            .operation<void()>("OnBimProjListCleared", &I::OnBimProjListCleared)
            .operation<void()>("OnBimProjListSynced", &I::OnBimProjListSynced)
            .operation<void(const QStringList&)>("OnDownLoadBimProj", &I::OnDownLoadBimProj)
            .operation<void()>("ReservedSixth", &I::ReservedSixth)
            .operation<void()>("ReservedSeventh", &I::ReservedSeventh)
            .operation<void(const QString&, bool)>("OnConvertSimplyMode", &I::OnConvertSimplyMode)
            .size(1);
    }
}

void checkSubject(Problems& problems)
{
#if NELVO_TABLE_HAS_SUBJECT
    using I = BVUTILITY::ISubject<IMessageObserver>;
    // The virtual table, the two containers, and the size of std::mutex.
    InterfaceRow<I>("ISubject", problems).destructor().size(3 + sizeof(std::mutex) / sizeof(void*));
#else
    (void)problems;
#endif
}

//! The operations of the host's closed libraries that the plug-in calls.
void checkDatabase(Problems& problems)
{
    using namespace VLSmartDB;
    {
        using I = IVLDBDirector;
        InterfaceRow<I>("IVLDBDirector", problems).operation<IVLDB*()>("GetDB", &I::GetDB).size(1);
    }
    {
        using I = IVLDB;
        InterfaceRow<I>("IVLDB", problems)
            .operation<IVLDBObject*(const VLDBId&, const Text&)>("GetObject", &I::GetObject)
            .operation<bool(const VLDBId&)>("LoadObject", &I::LoadObject)
            .size(1);
    }
    {
        using I = IVLDBObject;
        InterfaceRow<I>("IVLDBObject", problems)
            .operation<VLDBId()>("GetId", &I::GetId)
            .operation<IVLDBChildren*()>("GetChildren", &I::GetChildren)
            .operation<Text()>("GetName", &I::GetName)
            .operation<Text()>("GetTypeName", &I::GetTypeName)
            .operation<Text(const Text&)>("GetProperty", &I::GetProperty)
            .size(1);
    }
    {
        using I = IVLDBChildren;
        InterfaceRow<I>("IVLDBChildren", problems)
            .operation<void(std::vector<VLDBId>&)>("ListIds", &I::ListIds)
            .size(1);
    }
    RecordRow<VLDBId>("VLDBId", problems)
        .field<std::uint32_t>("data1", &VLDBId::data1, 0)
        .field<std::uint16_t>("data2", &VLDBId::data2, 4)
        .field<std::uint16_t>("data3", &VLDBId::data3, 6)
        .field<std::uint8_t[8]>("data4", &VLDBId::data4, 8)
        .field<Text>("text", &VLDBId::text, 16)
        .size(48);
}

void checkRecords(Problems& problems)
{
    RecordRow<LoginSession>("LoginSession", problems)
        .field<Text>("token", &LoginSession::token, 0)
        .field<Text>("cookies", &LoginSession::cookies, 32)
        .field<Text>("serverAddr", &LoginSession::serverAddr, 64)
        .field<Text>("sdkAddr", &LoginSession::sdkAddr, 96)
        .field<Text>("epName", &LoginSession::epName, 128)
        .field<Text>("appVer", &LoginSession::appVer, 160)
        .field<Text>("iotToken", &LoginSession::iotToken, 192)
        .field<bool>("loggedIn", &LoginSession::loggedIn, 224)
        .field<TextMap>("extra", &LoginSession::extra, 232)
        .size(280);
    RecordRow<ProjectNode>("ProjectNode", problems)
        .field<bool>("reservedFlag", &ProjectNode::reservedFlag, 0)
        .field<Text>("name", &ProjectNode::name, 8)
        .field<Text>("id", &ProjectNode::id, 40)
        .field<Text>("x", &ProjectNode::x, 72)
        .field<Text>("y", &ProjectNode::y, 104)
        .field<bool>("serverFlag", &ProjectNode::serverFlag, 136)
        .field<Text>("code", &ProjectNode::code, 144)
        .field<Text>("basemap", &ProjectNode::basemap, 176)
        .field<Text>("proj4", &ProjectNode::proj4, 208)
        .field<TextMap>("attrs", &ProjectNode::attrs, 240)
        .size(288);
    RecordRow<ProjectRef>("ProjectRef", problems)
        .field<Text>("id", &ProjectRef::id, 0)
        .field<Text>("name", &ProjectRef::name, 32)
        .field<TextMap>("attrs", &ProjectRef::attrs, 64)
        .size(112);
    RecordRow<OrgTreeNode>("OrgTreeNode", problems)
        .field<Text>("id", &OrgTreeNode::id, 0)
        .field<Text>("name", &OrgTreeNode::name, 32)
        .field<bool>("canSelect", &OrgTreeNode::canSelect, 64)
        .field<std::list<OrgTreeNode>>("children", &OrgTreeNode::children, 72)
        .size(96);
}

} // namespace

Problems problemsWithTable()
{
    Problems problems;
    checkPlugin(problems);
    checkHostContext(problems);
    checkMessages(problems);
    checkLogin(problems);
    checkProjects(problems);
    checkPds(problems);
    checkSubject(problems);
    checkDatabase(problems);
    checkRecords(problems);
    return problems;
}

} // namespace BinaryInterface
