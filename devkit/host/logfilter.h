#pragma once

#include "host/logmodel.h"

#include <QSortFilterProxyModel>

namespace NelvoDevkit {

//! \brief The part of the log that the user has chosen.
class LogFilter : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_PROPERTY(Shown shown READ shown WRITE setShown NOTIFY shownChanged)

public:
    enum Shown {
        Everything,
        ObserverCalls, //!< only the plug-in's calls
        Problems,      //!< only warnings and critical messages
    };
    Q_ENUM(Shown)

    //! Does not own `log`, which must outlive the filter.
    explicit LogFilter(LogModel& log);

    Shown shown() const { return m_shown; }
    void setShown(Shown shown);

    //! The rows `first` to `last` as text, one line each; skips rows that do not exist.
    QString text(int first, int last) const;
    //! Copies text(first, last) to the clipboard.
    Q_INVOKABLE void copy(int first, int last) const;

Q_SIGNALS:
    void shownChanged();

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    const LogModel& m_log;
    Shown m_shown = Everything;
};

} // namespace NelvoDevkit
