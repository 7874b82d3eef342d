#pragma once

#include <QAbstractListModel>
#include <QDateTime>
#include <QVector>

#include <deque>
#include <mutex>

namespace NelvoDevkit {

//! \brief One line of the log.
struct LogEntry {
    enum class Kind {
        Debug,
        Info,
        Warning,
        Critical,
        Host,     //!< something that the host did
        Observer, //!< a call that the plug-in made on one of the host's interfaces
    };

    Kind kind = Kind::Host;
    QString text;
    //! Where in the sources the line comes from, or its logging category; often empty.
    QString origin;
    QDateTime time = QDateTime::currentDateTime();

    //! The kind as the log shows it, such as "warning".
    QString kindName() const;
    //! The whole entry on one line, for the clipboard.
    QString toLine() const;
};

//! \brief The running log, oldest entry first, bounded.
class LogModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { TextRole = Qt::DisplayRole, KindRole = Qt::UserRole, TimeRole, OriginRole };

    //! Beyond `capacity` entries the oldest go.
    explicit LogModel(int capacity = 5000);

    //! Any thread. The entry shows up in the model with the next turn of the model's event loop.
    void append(LogEntry entry);
    //! Appends something that the host did. Any thread, as the next two.
    void logAction(const QString& text);
    //! Appends a call of the plug-in on the host, or a signal of the plug-in.
    void logCall(const QString& text);
    //! Appends a warning of the host's own.
    void logProblem(const QString& text);

    //! The entry in that row, which must exist.
    const LogEntry& entry(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    void takePending();

    const int m_capacity;
    std::deque<LogEntry> m_entries;
    std::mutex m_mutex;
    std::deque<LogEntry> m_pending; //!< guarded by m_mutex
};

} // namespace NelvoDevkit
