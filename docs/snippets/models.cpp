#include "docs/snippets/models.h"

#include <QQmlContext>

namespace Snippets {

//! [dialog]
Models::Models(NelvoSDK::IPdsMgr& manager, QQmlContext* context, QQuickItem* scene) : m_manager(manager)
{
    context->setContextProperty(QStringLiteral("bimControl"), this);
    context->setContextProperty(QStringLiteral("editConext"), this); // spelled so
    m_manager.SetQmlContext(context);
    m_manager.CreateBimDialog(scene);
    m_manager.Attach(this);
}

Models::~Models()
{
    m_manager.Detach(this);
}
//! [dialog]

//! [choice]
bool Models::checkBimProjValid(const QString& guid, bool /*isMainProject*/)
{
    return !m_imported.contains(guid);
}

void Models::OnDownLoadBimProj(const QStringList& guids)
{
    for (const QString& guid : guids) {
        m_imported.insert(guid);
        const std::wstring name = m_manager.GetBimProjName(guid.toStdWString());
        Q_EMIT importWanted(guid, QString::fromStdWString(name));
    }
}

void Models::OnConvertSimplyMode(const QString& guid, bool completionFirst)
{
    Q_EMIT outlineWanted(guid, completionFirst);
}
//! [choice]

} // namespace Snippets
