#pragma once

#include <QMap>
#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

class QIODevice;

namespace NelvoDevkit {

//! \brief How the package server delivers a package. By default: complete, correct and without delay.
struct PackageDelivery {
    enum class End {
        Whole, //!< with the last byte
        Cut,   //!< the connection ends after `endAfter` bytes
        Reset, //!< it is reset after that many; the client gets no more of them, but may get less
        Stall, //!< nothing follows them until a delivery is set for the package again
    };

    End end = End::Whole;
    qint64 endAfter = 0;  //!< bytes of the answer's body, of which a Range leaves less than of the file
    qint64 paceBytes = 0; //!< sends so many bytes every paceMilliseconds; 0: as fast as it goes
    int paceMilliseconds = 10;
    bool ignoresRange = false;           //!< answers a Range with 200 and the whole package
    std::optional<qint64> announcedSize; //!< Content-Length in place of the right one
    bool once = false; //!< for the next answer only; those after it are whole, right and at once
};

//! \brief The packages of the package server and how each is answered. Any thread.
class Packages
{
public:
    //! Makes a closed device that reads the package.
    using Content = std::function<std::unique_ptr<QIODevice>()>;

    //! \brief How one request is answered.
    struct Shipment {
        Content content;
        PackageDelivery delivery;
        quint64 era = 0; //!< how often a delivery had been set for the package before
    };

    //! Adds a package, in place of one of that name: from memory, from a file, which is read anew for each
    //! request, or of that many bytes that are made up as they go out, the same ones every time.
    void add(const QString& name, const QByteArray& content);
    void addFile(const QString& name, const QString& fileName);
    void addGenerated(const QString& name, qint64 size);
    //! How that package is answered from now on; answers that stall for it go on.
    void setDelivery(const QString& name, const PackageDelivery& delivery);

    QStringList names() const;
    //! Opens the package; null if there is none or it can't be read.
    std::unique_ptr<QIODevice> open(const QString& name) const;
    //! Up to `size` bytes of the package from `offset` on; less where it ends.
    QByteArray bytes(const QString& name, qint64 offset, int size) const;

    //! How the next request for the package is answered; nothing if there is no such package. A delivery
    //! that counts once is used up.
    std::optional<Shipment> take(const QString& name);
    //! Whether a delivery was set for the package since the shipment was taken.
    bool isOutdated(const QString& name, const Shipment& shipment) const;

private:
    struct Answers {
        PackageDelivery delivery;
        quint64 era = 0;
    };

    void put(const QString& name, const Content& content);

    mutable std::mutex m_mutex;
    QMap<QString, Content> m_contents;
    QMap<QString, Answers> m_answers;
};

//! Opens what the content makes, for reading without a buffer of its own; null if it can't be read.
std::unique_ptr<QIODevice> opened(const Packages::Content& content);

} // namespace NelvoDevkit
