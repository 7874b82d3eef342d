#include "tests/docs/page.h"
#include "tests/support/files.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace Docs {

namespace {

QString pathOf(const QString& name)
{
    return QStringLiteral(NELVO_DOCS_DIR "/") + name;
}

QString readText(const QString& path)
{
    return QString::fromUtf8(TestSupport::contentOf(path));
}

//! Matches a named block and captures its name and its content.
QRegularExpression blockOf(const QString& kind, const QString& name)
{
    return QRegularExpression(QStringLiteral("^<!-- %1: (%2) -->\n```\\w*\n(.*?)^```$").arg(kind, name),
                              QRegularExpression::MultilineOption |
                                  QRegularExpression::DotMatchesEverythingOption);
}

constexpr int Name = 1;
constexpr int Content = 2;

} // namespace

Page::Page(const QString& fileName) : m_path(pathOf(fileName)), m_text(readText(m_path)) {}

QStringList Page::names(const QString& kind) const
{
    QStringList found;
    QRegularExpressionMatchIterator matches = blockOf(kind, QStringLiteral("[\\w-]+")).globalMatch(m_text);
    while (matches.hasNext())
        found.append(matches.next().captured(Name));
    return found;
}

QString Page::block(const QString& kind, const QString& name) const
{
    return blockOf(kind, name).match(m_text).captured(Content);
}

bool Page::replace(const QString& kind, const QString& name, const QString& content)
{
    const QRegularExpressionMatch match = blockOf(kind, name).match(m_text);
    if (!match.hasMatch())
        return false;
    m_text.replace(match.capturedStart(Content), match.capturedLength(Content), content);
    QFile file(m_path);
    const QByteArray bytes = m_text.toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QString sourcesIn(const QString& directory)
{
    QString texts;
    const QFileInfoList files =
        QDir(pathOf(directory)).entryInfoList({QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files);
    for (const QFileInfo& file : files)
        texts += readText(file.filePath());
    return texts;
}

} // namespace Docs
