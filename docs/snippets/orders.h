#pragma once

#include <QObject>

#include <deque>
#include <functional>

namespace Snippets {

//! [orders-class]
//! Runs one order, a call to the plug-in, after the other, each from the event loop.
class Orders : public QObject
{
    Q_OBJECT

public:
    void add(std::function<void()> order);

Q_SIGNALS:
    void failed(const QString& reason);

private:
    void doNext();

    std::deque<std::function<void()>> m_orders; // the first one is running
};
//! [orders-class]

} // namespace Snippets
