#pragma once

#include <QByteArray>
#include <QVector>

//! \brief Builds a zip archive byte by byte, with the damage that a test needs.
class ZipArchive
{
public:
    struct Entry {
        QByteArray name; //!< the bytes in the archive
        QByteArray data;
        bool utf8 = false;     //!< flags the name as UTF-8
        bool deflated = false; //!< otherwise stored
        enum class Damage {
            None,
            Checksum,   //!< the checksum is wrong
            Data,       //!< the deflated data is invalid after its first block; needs about 100 KB
            LocalHeader //!< no local header at the place that the directory names
        } damage = Damage::None;
        QByteArray bzip2 = {}; //!< the data packed by bzip2; null for other methods
    };

    void add(const Entry& entry);
    void add(const QByteArray& name, const QByteArray& data) { add({name, data}); }
    QByteArray bytes() const;
    //! The offset of the directory of entries.
    int directoryOffset() const { return m_content.size(); }

private:
    QByteArray m_content;
    QByteArray m_directory;
    int m_entries = 0;
};
