#pragma once

#include <QAbstractListModel>
#include <QTimer>

#include <vector>

namespace NelvoDevkit {

//! \brief A model that the user has imported or is importing.
struct ImportedModel {
    enum class Kind {
        Download,         //!< the complete model
        PerformanceFirst, //!< an outline model, ready soon
        CompletionFirst,  //!< an outline model, complete
    };

    QString guid;
    QString name;
    Kind kind = Kind::Download;
    bool inMainProject = false;
    int percent = 0;

    //! The name of the kind for the user.
    QString kindName() const;
};

//! \brief The models of the scene as rows, oldest first.
//!
//! A host downloads and converts models itself. This host only simulates it: nothing is transferred, and each
//! import takes about a second.
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
        ReadableRole, //!< whether PDS projects can be read: only from a completely downloaded model
    };

    ImportedModels();

    //! Adds a model at 0 percent and starts its simulated import.
    void add(const ImportedModel& model);
    //! Whether that model has been or is being downloaded into the main project, or into another project.
    bool has(const QString& guid, bool inMainProject) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();
    //! An import is complete.
    void finished(const NelvoDevkit::ImportedModel& model);

private:
    void advance();

    std::vector<ImportedModel> m_models;
    QTimer m_clock;
};

} // namespace NelvoDevkit
