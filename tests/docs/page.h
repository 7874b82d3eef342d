#pragma once

#include <QString>
#include <QStringList>

namespace Docs {

//! \brief A page of docs/, with its fenced blocks that have a name.
//!
//! The name stands on the line before the block, in a comment that readers don't see: `<!-- kind: name -->`.
class Page
{
public:
    //! `fileName` is relative to docs/. A page that can't be read is empty.
    explicit Page(const QString& fileName);

    const QString& text() const { return m_text; }
    //! Names of the blocks of that kind, in their order.
    QStringList names(const QString& kind) const;
    //! What stands in the block, its last line ended; null if there is no such block.
    QString block(const QString& kind, const QString& name) const;
    //! Replaces what stands in the block, in the file too. False if there is no such block, or if the file
    //! can't be written.
    bool replace(const QString& kind, const QString& name, const QString& content);

private:
    QString m_path;
    QString m_text;
};

//! The C++ files of a directory below docs/, one behind the other.
QString sourcesIn(const QString& directory);

} // namespace Docs
