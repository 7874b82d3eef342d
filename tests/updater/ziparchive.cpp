#include "tests/updater/ziparchive.h"

#include <quazip/quacrc32.h>

#include <QtEndian>

namespace {

void append16(QByteArray& bytes, int value)
{
    const quint16 little = qToLittleEndian(static_cast<quint16>(value));
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

void append32(QByteArray& bytes, quint32 value)
{
    const quint32 little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

//! The deflated data, without the length that Qt puts in front and without zlib's header and checksum.
QByteArray deflate(const QByteArray& data, int level = -1)
{
    constexpr int headSize = 4 + 2;
    constexpr int tailSize = 4;
    const QByteArray framed = qCompress(data, level);
    return framed.mid(headSize, framed.size() - headSize - tailSize);
}

//! A correct first block and a second block of an invalid type. Level 0 makes blocks of stored data, whose
//! heads contain their length.
QByteArray deflateWithDamage(const QByteArray& data)
{
    constexpr int blockHeadSize = 5;
    QByteArray packed = deflate(data, 0);
    const int second = blockHeadSize + qFromLittleEndian<quint16>(packed.constData() + 1);
    if (second >= packed.size())
        qFatal("the data doesn't fill two blocks");
    packed[second] = 7;
    return packed;
}

int methodOf(const ZipArchive::Entry& entry)
{
    constexpr int deflated = 8;
    constexpr int bzip2 = 12;
    if (!entry.bzip2.isNull())
        return bzip2;
    return entry.deflated ? deflated : 0;
}

QByteArray pack(const ZipArchive::Entry& entry)
{
    if (!entry.bzip2.isNull())
        return entry.bzip2;
    if (entry.damage == ZipArchive::Entry::Damage::Data)
        return deflateWithDamage(entry.data);
    return entry.deflated ? deflate(entry.data) : entry.data;
}

} // namespace

void ZipArchive::add(const Entry& entry)
{
    using Damage = Entry::Damage;
    const QByteArray packed = pack(entry);
    quint32 checksum = QuaCrc32().calculate(entry.data);
    if (entry.damage == Damage::Checksum)
        ++checksum;

    // From the required version to the length of the extra field. The local header and the directory share
    // these fields.
    QByteArray fields;
    append16(fields, 20);
    append16(fields, entry.utf8 ? 0x800 : 0);
    append16(fields, methodOf(entry));
    append32(fields, 0);
    append32(fields, checksum);
    append32(fields, static_cast<quint32>(packed.size()));
    append32(fields, static_cast<quint32>(entry.data.size()));
    append16(fields, entry.name.size());
    append16(fields, 0);

    m_directory.append("PK\x01\x02\x14", 5).append('\0').append(fields).append(QByteArray(10, '\0'));
    append32(m_directory, static_cast<quint32>(m_content.size()));
    m_directory.append(entry.name);

    m_content.append(entry.damage == Damage::LocalHeader ? "XX\x03\x04" : "PK\x03\x04", 4);
    m_content.append(fields).append(entry.name).append(packed);
    ++m_entries;
}

QByteArray ZipArchive::bytes() const
{
    QByteArray end("PK\x05\x06");
    append32(end, 0);
    append16(end, m_entries);
    append16(end, m_entries);
    append32(end, static_cast<quint32>(m_directory.size()));
    append32(end, static_cast<quint32>(m_content.size()));
    append16(end, 0);
    return m_content + m_directory + end;
}
