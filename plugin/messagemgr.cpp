#include "plugin/messagemgr.h"

namespace NelvoPlugin {

using NelvoSDK::IMessageObserver;

void* CMessageMgr::GetContext()
{
    return m_context;
}

void CMessageMgr::SetContext(void* context)
{
    m_context = context;
}

void CMessageMgr::NotifyFirst(const QString& text)
{
    send({&IMessageObserver::OnMessageFirst, text});
}

void CMessageMgr::NotifySecond(const QString& text)
{
    send({&IMessageObserver::OnMessageSecond, text});
}

void CMessageMgr::NotifyThird(const QString& text)
{
    send({&IMessageObserver::OnMessageThird, text});
}

void CMessageMgr::Attach(IMessageObserver* observer)
{
    ISubject::Attach(observer);
}

void CMessageMgr::Detach(IMessageObserver* observer)
{
    ISubject::Detach(observer);
}

void CMessageMgr::send(const Dispatch& dispatch) const
{
    Notify([&dispatch](IMessageObserver& observer) { (observer.*dispatch.operation)(dispatch.text); });
}

} // namespace NelvoPlugin
