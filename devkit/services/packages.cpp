#include "services/packages.h"

#include "services/generatedfile.h"

#include <QBuffer>
#include <QFile>

namespace NelvoDevkit {

std::unique_ptr<QIODevice> opened(const Packages::Content& content)
{
    std::unique_ptr<QIODevice> device = content();
    if (!device->open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return nullptr;
    return device;
}

void Packages::add(const QString& name, const QByteArray& content)
{
    put(name, [content] {
        auto buffer = std::make_unique<QBuffer>();
        buffer->setData(content);
        return buffer;
    });
}

void Packages::addFile(const QString& name, const QString& fileName)
{
    put(name, [fileName] { return std::make_unique<QFile>(fileName); });
}

void Packages::addGenerated(const QString& name, qint64 size)
{
    put(name, [size] { return std::make_unique<GeneratedFile>(size); });
}

void Packages::put(const QString& name, const Content& content)
{
    const std::lock_guard lock(m_mutex);
    m_contents.insert(name, content);
}

void Packages::setDelivery(const QString& name, const PackageDelivery& delivery)
{
    const std::lock_guard lock(m_mutex);
    Answers& answers = m_answers[name];
    answers.delivery = delivery;
    ++answers.era;
}

QStringList Packages::names() const
{
    const std::lock_guard lock(m_mutex);
    return m_contents.keys();
}

std::unique_ptr<QIODevice> Packages::open(const QString& name) const
{
    Content content;
    {
        const std::lock_guard lock(m_mutex);
        content = m_contents.value(name);
    }
    return content ? opened(content) : nullptr;
}

QByteArray Packages::bytes(const QString& name, qint64 offset, int size) const
{
    const std::unique_ptr<QIODevice> package = open(name);
    return package && package->seek(offset) ? package->read(size) : QByteArray();
}

std::optional<Packages::Shipment> Packages::take(const QString& name)
{
    const std::lock_guard lock(m_mutex);
    const auto content = m_contents.find(name);
    if (content == m_contents.end())
        return std::nullopt;
    Answers& answers = m_answers[name];
    Shipment shipment{*content, answers.delivery, answers.era};
    if (answers.delivery.once)
        answers.delivery = {};
    return shipment;
}

bool Packages::isOutdated(const QString& name, const Shipment& shipment) const
{
    const std::lock_guard lock(m_mutex);
    return m_answers.value(name).era != shipment.era;
}

} // namespace NelvoDevkit
