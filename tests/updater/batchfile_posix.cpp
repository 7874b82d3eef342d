#include "tests/support/files.h"
#include "tests/updater/batchfile.h"

#include <QFile>

using TestSupport::contentOf;

namespace {

const auto Gate = QStringLiteral("second.txt.gate");

} // namespace

QByteArray BatchFile::trace() const
{
    return contentOf(m_script + QStringLiteral(".started"));
}

bool BatchFile::hold() const
{
    // The script waits at this pipe, because no process opens it for writing.
    return makeFifo(m_host.path(Gate));
}

bool BatchFile::isHeld() const
{
    return contentOf(m_script + QStringLiteral(".at")) == "second.txt\n";
}

bool BatchFile::kill() const
{
    const QByteArray process = contentOf(m_script + QStringLiteral(".pid")).trimmed();
    return QProcess::execute(QStringLiteral("kill"),
                             {QStringLiteral("-KILL"), QString::fromLatin1(process)}) == 0;
}

void BatchFile::letGo() const
{
    QFile::remove(m_host.path(Gate));
}
