#pragma once

#include <QByteArray>
#include <QVector>

//! \brief A zip archive byte for byte, with everything wrong that a test asks for.
class ZipArchive
{
public:
    struct Entry {
        QByteArray name; //!< as it stands in the archive
        QByteArray data;
        bool utf8 = false;     //!< flags the name as UTF-8
        bool deflated = false; //!< otherwise stored
        enum class Damage {
            None,
            Checksum,   //!< the data doesn't match its checksum
            Data,       //!< deflated data that breaks off; takes some 100 KB
            LocalHeader //!< the entry has no header where the directory says
        } damage = Damage::None;
        QByteArray bzip2 = {}; //!< what bzip2 made of the data, if it is packed so
    };

    void add(const Entry& entry);
    void add(const QByteArray& name, const QByteArray& data) { add({name, data}); }
    QByteArray bytes() const;
    //! Where the directory of entries begins.
    int directoryOffset() const { return m_content.size(); }

private:
    QByteArray m_content;
    QByteArray m_directory;
    int m_entries = 0;
};
