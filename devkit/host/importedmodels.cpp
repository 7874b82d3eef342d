#include "host/importedmodels.h"

#include <algorithm>
#include <chrono>

namespace NelvoDevkit {

namespace {

constexpr std::chrono::milliseconds StepTime(60);
constexpr int StepPercent = 5;
constexpr int Complete = 100;

} // namespace

QString ImportedModel::kindName() const
{
    switch (kind) {
    case Kind::Download:
        return QStringLiteral("下载");
    case Kind::PerformanceFirst:
        return QStringLiteral("概要模型（性能优先）");
    case Kind::CompletionFirst:
        return QStringLiteral("概要模型（完整度优先）");
    }
    Q_UNREACHABLE();
}

ImportedModels::ImportedModels()
{
    m_clock.setInterval(StepTime);
    connect(&m_clock, &QTimer::timeout, this, &ImportedModels::advance);
}

void ImportedModels::add(const ImportedModel& model)
{
    beginInsertRows({}, rowCount(), rowCount());
    m_models.push_back(model);
    m_models.back().percent = 0;
    endInsertRows();
    Q_EMIT countChanged();
    m_clock.start();
}

bool ImportedModels::has(const QString& guid, bool inMainProject) const
{
    return std::any_of(m_models.begin(), m_models.end(), [&](const ImportedModel& model) {
        return model.kind == ImportedModel::Kind::Download && model.guid == guid &&
               model.inMainProject == inMainProject;
    });
}

void ImportedModels::advance()
{
    bool busy = false;
    for (int row = 0; row < rowCount(); ++row) {
        ImportedModel& model = m_models[std::size_t(row)];
        if (model.percent == Complete)
            continue;
        model.percent = std::min(Complete, model.percent + StepPercent);
        Q_EMIT dataChanged(index(row), index(row), {PercentRole, ReadableRole});
        if (model.percent == Complete)
            Q_EMIT finished(ImportedModel(model));
        else
            busy = true;
    }
    if (!busy)
        m_clock.stop();
}

int ImportedModels::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_models.size());
}

QVariant ImportedModels::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ImportedModel& model = m_models[std::size_t(index.row())];
    switch (role) {
    case NameRole:
        return model.name;
    case GuidRole:
        return model.guid;
    case KindRole:
        return model.kindName();
    case MainProjectRole:
        return model.inMainProject;
    case PercentRole:
        return model.percent;
    case ReadableRole:
        return model.kind == ImportedModel::Kind::Download && model.percent == Complete;
    default:
        return {};
    }
}

QHash<int, QByteArray> ImportedModels::roleNames() const
{
    return {{NameRole, "name"},       {GuidRole, "guid"},
            {KindRole, "kind"},       {MainProjectRole, "inMainProject"},
            {PercentRole, "percent"}, {ReadableRole, "readable"}};
}

} // namespace NelvoDevkit
