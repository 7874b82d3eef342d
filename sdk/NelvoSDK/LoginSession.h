#pragma once

#include <map>
#include <string>

namespace NelvoSDK {

//! \brief The result of a sign-in.
//!
//! A plain value: copy it freely. The host receives it in ILoginObserver::OnLoginSucceeded and passes it to
//! IProjectInfoMgr::ReflushProjOrgInfo. All strings of a new record are empty. Wide strings are UTF-16 on
//! Windows and UTF-32 elsewhere, as QString::toStdWString creates them.
struct LoginSession {
    //! Reserved for a service token. Empty in every record today.
    std::wstring token;
    //! Cookies of the editor service: the raw form of each cookie (name, value and attributes), joined with
    //! ",". Empty if the service set no cookie during this sign-in.
    std::wstring cookies;
    //! Address of the editor service followed by the proxy suffix of `ProxyUrlSuffix.json`.
    std::wstring serverAddr;
    //! Address of the editor service, with scheme: the base of the requests for projects and models.
    std::wstring sdkAddr;
    //! Name of the chosen enterprise.
    std::wstring epName;
    //! Reserved for the application's version. Empty in every record today.
    std::wstring appVer;
    //! Client token of the IoT service, exactly as the service sent it, including quotes. Empty if the
    //! request failed.
    std::wstring iotToken;
    //! True in every session that an observer receives, also if the services behind the sign-in did not
    //! reply. The other fields are then those of the previous sign-in in the same process, or empty.
    bool loggedIn = false;
    //! "epId": the id of the enterprise as decimal text. "epName": the same as the field epName. See
    //! RecordKeys.
    std::map<std::wstring, std::wstring> extra;
};

} // namespace NelvoSDK
