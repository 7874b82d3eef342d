#pragma once

#include <QObject>

#include <deque>
#include <functional>

namespace NelvoDevkit {

//! \brief Does one thing after the other, each from the event loop.
//!
//! The plug-in's operations block while they pump events, and none may be called from within another:
//! what comes up meanwhile waits here.
class OperationQueue : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool busy READ isBusy NOTIFY changed)
    Q_PROPERTY(QString activity READ activity NOTIFY changed)

public:
    bool isBusy() const { return !m_operations.empty(); }
    //! What is being done, or done next, for the user; empty when nothing is.
    QString activity() const;

    //! Never does `work` at once. An std::out_of_range that leaves it is told by `failed`, and the next
    //! operation follows.
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

    std::deque<Operation> m_operations; //!< the one at work stays in front until it is done
};

} // namespace NelvoDevkit
