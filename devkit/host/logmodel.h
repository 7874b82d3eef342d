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
        Host,     //!< an action of the host
        Observer, //!< a call of the plug-in to one of the host's interfaces
    };

    Kind kind = Kind::Host;
    QString text;
    //! The place in the sources, or the logging category; often empty.
    QString origin;
    QDateTime time = QDateTime::currentDateTime();

    //! The kind as text, such as "warning".
    QString kindName() const;
    //! The whole entry on one line, for the clipboard.
    QString toLine() const;
};

//! \brief The log, oldest entry first, with a limited size.
class LogModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { TextRole = Qt::DisplayRole, KindRole = Qt::UserRole, TimeRole, OriginRole };

    //! Drops the oldest entries beyond `capacity`.
    explicit LogModel(int capacity = 5000);

    //! Any thread. The event loop of the model's thread adds the entry to the model.
    void append(LogEntry entry);
    //! Appends an action of the host. Any thread, as the next two.
    void logAction(const QString& text);
    //! Appends a call of the plug-in to the host, or a signal of the plug-in.
    void logCall(const QString& text);
    //! Appends a warning of the host.
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
