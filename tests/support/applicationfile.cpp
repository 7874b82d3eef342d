#include "tests/support/applicationfile.h"
#include "tests/support/files.h"

#include <QCoreApplication>
#include <QFile>

namespace TestSupport {

ApplicationFile::ApplicationFile(const QString& name)
    : m_path(QCoreApplication::applicationDirPath() + QLatin1Char('/') + name)
{
    remove();
}

ApplicationFile::~ApplicationFile()
{
    remove();
}

bool ApplicationFile::exists() const
{
    return QFile::exists(m_path);
}

QByteArray ApplicationFile::content() const
{
    return contentOf(m_path);
}

void ApplicationFile::write(const QByteArray& content) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qUtf8Printable(m_path));
}

void ApplicationFile::remove() const
{
    QFile::remove(m_path);
}

} // namespace TestSupport
