#include "docs/snippets/models.h"

#include <QQmlContext>

namespace Snippets {

//! [dialog]
Models::Models(NelvoSDK::IPdsMgr& manager, QQmlContext* context, QQuickItem* scene)
    : m_manager(manager), m_scene(scene)
{
    context->setContextProperty(QStringLiteral("bimControl"), this);
    context->setContextProperty(QStringLiteral("editConext"), this); // the spelling is intentional
    m_manager.SetQmlContext(context);
    m_organisation = context->contextProperty(QStringLiteral("orgModel")).value<QAbstractItemModel*>();
    createDialog();
    m_manager.Attach(this);
}

Models::~Models()
{
    m_manager.Detach(this);
    delete m_dialog;
}

void Models::createDialog()
{
    delete m_dialog;
    m_manager.CreateBimDialog(m_scene);
    // The scene item has no other child, so this is the dialog.
    m_dialog = m_scene->findChild<QQuickItem*>(QString(), Qt::FindDirectChildrenOnly);
}
//! [dialog]

//! [enterprise]
void Models::readModels(int earlierUnits)
{
    createDialog(); // an open dialog would keep the rows and the department of the earlier enterprise
    // Remove the earlier tree, and the earlier units at the beginning of the new tree.
    m_organisation->removeRows(0, m_organisation->rowCount());
    m_manager.InitBimData();
    m_organisation->removeRows(0, earlierUnits, m_organisation->index(0, 0));
}
//! [enterprise]

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
