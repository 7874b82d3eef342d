#pragma once

#include <QString>

namespace NelvoSDK {

//! \brief Implemented by the host: receives the texts that pass through IMessageMgr.
//!
//! The three kinds differ only by name; what each stands for is the host's matter. The plug-in itself
//! sends one message: OnMessageFirst with a Chinese text for the user when the account has signed in
//! elsewhere, repeated every ten seconds while that lasts. Called on the sender's thread, which is the
//! GUI thread for the plug-in's own message. `text` is valid for the time of the call.
class IMessageObserver
{
public:
    //! Never called by the plug-in; keeps its place in the interface.
    virtual void ReservedFirst() {}
    virtual void OnMessageFirst(const QString& text) = 0;
    virtual void OnMessageSecond(const QString& text) = 0;
    virtual void OnMessageThird(const QString& text) = 0;

protected:
    ~IMessageObserver() = default;
};

} // namespace NelvoSDK
