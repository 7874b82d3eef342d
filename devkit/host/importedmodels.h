#pragma once

#include <QAbstractListModel>
#include <QTimer>

#include <vector>

namespace NelvoDevkit {

//! \brief A model that the user has brought into the scene, or is bringing there.
struct ImportedModel {
    enum class Kind {
        Download,         //!< the model as it is
        PerformanceFirst, //!< an outline model, quickly made
        CompletionFirst,  //!< an outline model that leaves nothing out
    };

    QString guid;
    QString name;
    Kind kind = Kind::Download;
    bool inMainProject = false;
    int percent = 0;

    //! The kind as the user reads it.
    QString kindName() const;
};

//! \brief The models of the scene as rows, oldest first.
//!
//! Downloads and conversions are the host's own business. This host only pretends: nothing travels, and
//! each is done after a second or so.
class ImportedModels : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    enum Role {
        NameRole = Qt::DisplayRole,
        GuidRole = Qt::UserRole,
        KindRole,
        MainProjectRole,
        PercentRole,
        ReadableRole, //!< whether there is a model to read from: one downloaded whole
    };

    ImportedModels();

    //! Adds a model at 0 percent and lets it come in.
    void add(const ImportedModel& model);
    //! Whether that model has been downloaded into the main project, or into another one; on its way counts.
    bool has(const QString& guid, bool inMainProject) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();
    //! A model has come in.
    void finished(const NelvoDevkit::ImportedModel& model);

private:
    void advance();

    std::vector<ImportedModel> m_models;
    QTimer m_clock;
};

} // namespace NelvoDevkit
