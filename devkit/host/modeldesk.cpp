#include "host/modeldesk.h"

#include <QAbstractItemModel>
#include <QQmlContext>
#include <QStringList>

namespace NelvoDevkit {

namespace {

QString projectName(bool isMainProject)
{
    return isMainProject ? QStringLiteral("the main project") : QStringLiteral("another project");
}

} // namespace

ModelDesk::ModelDesk(NelvoSDK::INelvoSDKPlugin& plugin, LogModel& log)
    : m_manager(*plugin.GetPdsMgr()), m_log(log)
{
    m_manager.SetPlugin(&plugin);
    m_manager.Attach(this);
    connect(&m_models, &ImportedModels::finished, this, [this](const ImportedModel& model) {
        m_log.logAction(QStringLiteral("%1 “%2”: done, in %3")
                            .arg(model.kindName(), model.name, projectName(model.inMainProject)));
    });
}

ModelDesk::~ModelDesk()
{
    m_manager.Detach(this);
}

void ModelDesk::setMainProject(bool isMainProject)
{
    if (isMainProject == m_isMainProject)
        return;
    m_isMainProject = isMainProject;
    m_log.logAction(QStringLiteral("opened ") + projectName(isMainProject));
    Q_EMIT mainProjectChanged();
}

void ModelDesk::publish(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("bimControl"), this);
    context->setContextProperty(QStringLiteral("editConext"), this); // spelled so
    m_log.logAction(QStringLiteral("IPdsMgr::SetQmlContext"));
    m_manager.SetQmlContext(context);
    m_organisation = context->contextProperty(QStringLiteral("orgModel")).value<QAbstractItemModel*>();
}

void ModelDesk::createDialog(QQuickItem* scene)
{
    m_log.logAction(QStringLiteral("IPdsMgr::CreateBimDialog"));
    m_manager.CreateBimDialog(scene);
    m_dialog = scene->findChild<QQuickItem*>(QString(), Qt::FindDirectChildrenOnly);
    if (!m_dialog)
        m_log.logProblem(QStringLiteral("the BIM dialog did not load"));
}

void ModelDesk::destroyDialog()
{
    delete m_dialog;
}

//! InitBimData appends the whole tree to the dialog's model, so a host that signs in once calls it once. This
//! host can enter another enterprise: it removes the earlier tree from the model that it shares with the
//! plug-in, and the units of earlier sign-ins from the new tree.
void ModelDesk::readModels(int earlierUnits)
{
    if (m_organisation)
        m_organisation->removeRows(0, m_organisation->rowCount());
    m_log.logAction(QStringLiteral("IPdsMgr::InitBimData"));
    m_manager.InitBimData();
    if (m_organisation)
        m_organisation->removeRows(0, earlierUnits, m_organisation->index(0, 0));
    m_ready = true;
    Q_EMIT readyChanged();
}

void ModelDesk::openBimDialog()
{
    m_log.logAction(QStringLiteral("IPdsMgr::OpenBimDialog"));
    m_manager.OpenBimDialog();
}

void ModelDesk::openDwgDialog()
{
    m_log.logAction(QStringLiteral("IPdsMgr::OpenDWGBimDialog"));
    m_manager.OpenDWGBimDialog();
}

bool ModelDesk::checkBimProjValid(const QString& guid, bool isMainProject)
{
    const bool isValid = !m_models.has(guid, isMainProject);
    m_log.logCall(QStringLiteral("bimControl.checkBimProjValid: “%1” into %2: %3")
                      .arg(nameOf(guid), projectName(isMainProject),
                           isValid ? QStringLiteral("true") : QStringLiteral("false, it is there")));
    return isValid;
}

void ModelDesk::OnBimDialogOpened(QQuickItem* /*dialog*/)
{
    m_log.logCall(QStringLiteral("IPdsObserver::OnBimDialogOpened"));
}

void ModelDesk::OnBimDialogClosed(QQuickItem* /*dialog*/)
{
    m_log.logCall(QStringLiteral("IPdsObserver::OnBimDialogClosed"));
}

void ModelDesk::OnBimProjListCleared()
{
    m_log.logCall(QStringLiteral("IPdsObserver::OnBimProjListCleared"));
}

void ModelDesk::OnBimProjListSynced()
{
    m_log.logCall(QStringLiteral("IPdsObserver::OnBimProjListSynced"));
}

void ModelDesk::OnDownLoadBimProj(const QStringList& guids)
{
    for (const QString& guid : guids) {
        m_log.logCall(QStringLiteral("IPdsObserver::OnDownLoadBimProj: “%1”, %2").arg(nameOf(guid), guid));
        add(guid, ImportedModel::Kind::Download);
    }
}

void ModelDesk::OnConvertSimplyMode(const QString& guid, bool completionFirst)
{
    m_log.logCall(QStringLiteral("IPdsObserver::OnConvertSimplyMode: “%1”, %2 first")
                      .arg(nameOf(guid),
                           completionFirst ? QStringLiteral("completion") : QStringLiteral("performance")));
    add(guid, completionFirst ? ImportedModel::Kind::CompletionFirst : ImportedModel::Kind::PerformanceFirst);
}

void ModelDesk::add(const QString& guid, ImportedModel::Kind kind)
{
    m_models.add({guid, nameOf(guid), kind, m_isMainProject});
}

QString ModelDesk::nameOf(const QString& guid)
{
    const QString name = QString::fromStdWString(m_manager.GetBimProjName(guid.toStdWString()));
    return name.isEmpty() ? guid : name;
}

} // namespace NelvoDevkit
