#pragma once

#include <map>
#include <string>

namespace NelvoSDK {

//! \brief What a finished sign-in hands to the host.
//!
//! A plain value: copy it freely. The host receives it in ILoginObserver::OnLoginSucceeded and passes
//! it on, unchanged, to IProjectInfoMgr::ReflushProjOrgInfo. All texts are empty in a fresh record.
struct LoginSession {
    //! Reserved for a service token. Empty in every record today.
    std::wstring token;
    //! Cookies of the editor service: the raw form of each (name, value and attributes), joined with ",".
    //! Empty when the service set no new cookie during this sign-in.
    std::wstring cookies;
    //! Address of the editor service followed by the proxy suffix of `ProxyUrlSuffix.json`.
    std::wstring serverAddr;
    //! Address of the editor service alone, with scheme: the base of project and BIM calls.
    std::wstring sdkAddr;
    //! Name of the chosen enterprise.
    std::wstring epName;
    //! Reserved for the application's version. Empty in every record today.
    std::wstring appVer;
    //! Client token of the IoT service as the service sent it, quotes included if it sent any.
    //! Empty when the service did not answer.
    std::wstring iotToken;
    //! True in every record that a sign-in publishes, also when the services behind it did not answer. The
    //! other fields are then empty, or, after an earlier sign-in in the same process, those of that one.
    bool loggedIn = false;
    //! "epId": the enterprise's id as decimal text; "epName": its name once more.
    std::map<std::wstring, std::wstring> extra;
};

} // namespace NelvoSDK
