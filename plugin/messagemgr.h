#pragma once

#include <BVUtility/ISubject.h>
#include <NelvoSDK/IMessageMgr.h>

namespace NelvoPlugin {

//! \brief Passes a text to every attached observer, synchronously and on the caller's thread.
class CMessageMgr final : public NelvoSDK::IMessageMgr, public BVUTILITY::ISubject<NelvoSDK::IMessageObserver>
{
public:
    void* GetContext() override;
    void SetContext(void* context) override;
    void NotifyFirst(const QString& text) override;
    void NotifySecond(const QString& text) override;
    void NotifyThird(const QString& text) override;
    void Attach(NelvoSDK::IMessageObserver* observer) override;
    void Detach(NelvoSDK::IMessageObserver* observer) override;

private:
    using Operation = void (NelvoSDK::IMessageObserver::*)(const QString&);

    //! A message that is being sent. It owns a copy of the text, because an observer may change the sender's
    //! text.
    struct Dispatch {
        Operation operation;
        QString text;
    };

    void send(const Dispatch& dispatch) const;

    void* m_context = nullptr;
};

} // namespace NelvoPlugin
