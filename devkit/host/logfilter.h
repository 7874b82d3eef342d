#pragma once

#include "host/logmodel.h"

#include <QSortFilterProxyModel>

namespace NelvoDevkit {

//! \brief The part of the log that the user wants to see.
class LogFilter : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_PROPERTY(Shown shown READ shown WRITE setShown NOTIFY shownChanged)

public:
    enum Shown {
        Everything,
        ObserverCalls, //!< the plug-in's calls alone
        Problems,      //!< warnings and critical messages alone
    };
    Q_ENUM(Shown)

    //! `log` is not owned and lives longer than the filter.
    explicit LogFilter(LogModel& log);

    Shown shown() const { return m_shown; }
    void setShown(Shown shown);

    //! The rows `first` to `last` as text, one line each; rows that don't exist are left out.
    QString text(int first, int last) const;
    //! Puts text(first, last) on the clipboard.
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
