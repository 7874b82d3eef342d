#pragma once

#include <QString>
#include <QStringList>

namespace Docs {

//! \brief A page of docs/ with its named fenced blocks.
//!
//! The name is in an invisible comment on the line before the block: `<!-- kind: name -->`.
class Page
{
public:
    //! `fileName` is relative to docs/. If the page cannot be read, it is empty.
    explicit Page(const QString& fileName);

    const QString& text() const { return m_text; }
    //! The names of the blocks of this kind, in order.
    QStringList names(const QString& kind) const;
    //! The content of the block, with a line feed at its end; null if the block is missing.
    QString block(const QString& kind, const QString& name) const;
    //! Replaces the content of the block and writes the file. Returns false if the block is missing or the
    //! file cannot be written.
    bool replace(const QString& kind, const QString& name, const QString& content);

private:
    QString m_path;
    QString m_text;
};

//! The content of all C++ files of a directory below docs/.
QString sourcesIn(const QString& directory);

} // namespace Docs
