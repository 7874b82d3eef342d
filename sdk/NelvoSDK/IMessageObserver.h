#pragma once

#include <QString>

namespace NelvoSDK {

//! \brief Implemented and owned by the host: receives the texts that are sent through IMessageMgr.
//!
//! The three kinds of text differ by name only; the host decides what each kind means. The plug-in sends one
//! message itself: OnMessageFirst, with a Chinese text for the user, when the account has signed in
//! elsewhere. It repeats this message every ten seconds until the host installs a new session. Observers are
//! called on the sender's thread; the plug-in sends on the GUI thread.
class IMessageObserver
{
public:
    //! Never called; keeps its place in the interface.
    virtual void ReservedFirst() {}
    //! A text of the first kind: from the host, or the plug-in's notice that the account has signed in
    //! elsewhere.
    //! \param text valid during the call.
    virtual void OnMessageFirst(const QString& text) = 0;
    //! A text of the second kind, from the host.
    //! \param text valid during the call.
    virtual void OnMessageSecond(const QString& text) = 0;
    //! A text of the third kind, from the host.
    //! \param text valid during the call.
    virtual void OnMessageThird(const QString& text) = 0;

protected:
    //! The plug-in never deletes an observer.
    ~IMessageObserver() = default;
};

} // namespace NelvoSDK
