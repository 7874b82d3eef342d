#pragma once

#include <NelvoSDK/IMessageMgr.h>

#include <QStringList>

namespace TestSupport {

//! \brief A message manager without observers that records the texts.
class MessageMgrStandIn final : public NelvoSDK::IMessageMgr
{
public:
    void* GetContext() override { return nullptr; }
    void SetContext(void*) override {}
    void NotifyFirst(const QString& message) override { first.append(message); }
    void NotifySecond(const QString&) override { ++others; }
    void NotifyThird(const QString&) override { ++others; }
    void Attach(NelvoSDK::IMessageObserver*) override {}
    void Detach(NelvoSDK::IMessageObserver*) override {}

    QStringList first;
    int others = 0;
};

} // namespace TestSupport
