#pragma once

#include <QObject>

#include <deque>
#include <functional>

namespace NelvoDevkit {

//! \brief Runs one operation after the other, each from the event loop.
//!
//! The plug-in's operations block and process events meanwhile, and none may be called inside another.
//! Operations that are added during that time wait here.
class OperationQueue : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool busy READ isBusy NOTIFY changed)
    Q_PROPERTY(QString activity READ activity NOTIFY changed)

public:
    bool isBusy() const { return !m_operations.empty(); }
    //! The running or next operation, for the user; empty if there is none.
    QString activity() const;

    //! Never runs `work` at once. If `work` throws std::out_of_range, emits `failed`; the next operation
    //! follows.
    void add(const QString& activity, std::function<void()> work);

Q_SIGNALS:
    void changed();
    void failed(const QString& activity, const QString& reason);

private:
    struct Operation {
        QString activity;
        std::function<void()> work;
    };

    void schedule();
    void doNext();

    std::deque<Operation> m_operations; //!< the first one is running
};

} // namespace NelvoDevkit
