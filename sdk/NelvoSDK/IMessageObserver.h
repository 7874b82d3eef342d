#pragma once

#include <QString>

namespace NelvoSDK {

//! \brief Implemented by the host: receives the texts that pass through IMessageMgr.
//!
//! The three kinds differ only by name; what each stands for is the host's matter. The plug-in itself
//! sends one message: OnMessageFirst with a Chinese text for the user when the account has signed in
//! elsewhere, repeated every ten seconds while that lasts. Called on the sender's thread, which is the
//! GUI thread for the plug-in's own message.
class IMessageObserver
{
public:
    //! Never called by the plug-in; keeps its place in the interface.
    virtual void ReservedFirst() {}
    //! A text of the first kind: from the host, or from the plug-in for the user.
    //! \param text valid for the time of the call.
    virtual void OnMessageFirst(const QString& text) = 0;
    //! A text of the second kind, from the host.
    //! \param text valid for the time of the call.
    virtual void OnMessageSecond(const QString& text) = 0;
    //! A text of the third kind, from the host.
    //! \param text valid for the time of the call.
    virtual void OnMessageThird(const QString& text) = 0;

protected:
    //! The plug-in never deletes it.
    ~IMessageObserver() = default;
};

} // namespace NelvoSDK
