#include "probe/steps.h"

namespace NelvoDevkit {

namespace {

//! After a success the plug-in logs an object line by line; this is the first line.
constexpr char LoggedObject[] = "{";

} // namespace

const QVector<StepInfo>& allSteps()
{
    static const QVector<StepInfo> steps{
        {Step::PlugIn, "plug-in", "plug-in", "", ""},
        {Step::SignInForm, "sign-in-form", "sign-in form", "GET", "/login"},
        {Step::SignIn, "sign-in", "sign-in", "POST", "/login"},
        {Step::Enterprises, "enterprises", "enterprise list", "GET", "/rs/casLogin/listCompany"},
        {Step::Binding, "binding", "enterprise entered", "POST", "/rs/casLogin/casLogin", nullptr,
         LoggedObject},
        {Step::Addresses, "addresses", "service addresses", "GET", "/rs/casLogin/serverUrl", nullptr,
         LoggedObject},
        {Step::Token, "token", "IoT token", "GET", "/rs/cim/nelvo/client_token", nullptr, LoggedObject},
        {Step::Heartbeat, "heartbeat", "heartbeat", "GET", "/org/heartbeat",
         "CLoginActor::onLogin getprojList /org/heartbeat falied!"},
        {Step::Organisation, "organisation", "organisation", "GET", "/org/tree",
         "CProjectInfoMgr::ReflushProjOrgInfo /org/tree error!"},
        {Step::Projects, "projects", "scene projects", "GET", "/scene/project",
         "CProjectInfoMgr::GetServerProjectTree getprojList /scene/project falied!"},
        // The log texts of these two steps name another path than the one that failed.
        {Step::Models, "models", "BIM models", "GET", "/bim/relation/",
         "CProjectInfoMgr::getBimProjList getprojList /scene/project falied!"},
        {Step::Drawings, "drawings", "DWG drawings", "GET", "/bim/relation/dwg",
         "CProjectInfoMgr::getDWGBimProjList getprojList /scene/project falied!"},
        {Step::Updates, "updates", "update service", "POST", "/v1.0/service/sys/productVersion/findLatest"},
        {Step::SignOut, "sign-out", "sign-out", "GET", "/rs/casLogin/logout"},
    };
    return steps;
}

const StepInfo& infoOf(Step step)
{
    return allSteps().at(static_cast<int>(step));
}

} // namespace NelvoDevkit
