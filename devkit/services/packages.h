#pragma once

#include <services/services.h>

#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

class QIODevice;

namespace NelvoDevkit {

//! \brief The packages of the package server and how each is answered. Any thread.
class Packages
{
public:
    //! Makes a closed device that reads the package.
    using Content = std::function<std::unique_ptr<QIODevice>()>;

    //! \brief How one request is answered.
    struct Order {
        Content content;
        PackageDelivery delivery;
        quint64 era = 0; //!< how often a delivery had been set for the package before
    };

    void add(const QString& name, const QByteArray& content);
    void addFile(const QString& name, const QString& fileName);
    void addGenerated(const QString& name, qint64 size);
    void setDelivery(const QString& name, const PackageDelivery& delivery);

    QStringList names() const;
    //! Opens the package; null if there is none or it can't be read.
    std::unique_ptr<QIODevice> open(const QString& name) const;

    //! How the next request for the package is answered; nothing if there is no such package. A delivery
    //! that counts once is used up.
    std::optional<Order> take(const QString& name);
    //! Whether a delivery was set for the package since the order was taken.
    bool isOutdated(const QString& name, const Order& order) const;

private:
    struct Answers {
        PackageDelivery delivery;
        quint64 era = 0;
    };

    void add(const QString& name, const Content& content);

    mutable std::mutex m_mutex;
    QMap<QString, Content> m_contents;
    QMap<QString, Answers> m_answers;
};

//! Opens what the content makes, for reading without a buffer of its own; null if it can't be read.
std::unique_ptr<QIODevice> opened(const Packages::Content& content);

} // namespace NelvoDevkit
