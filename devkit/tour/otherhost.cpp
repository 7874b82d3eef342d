#include "tour/otherhost.h"

#include "tour/signinalone.h"
#include "tour/tour.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace NelvoDevkit {

namespace {

constexpr int EndMs = 30000;
//! The other host has its own accounts.
const auto AccountCache = QStringLiteral("loginchache.json");

} // namespace

OtherHost::~OtherHost()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (m_process.waitForFinished(EndMs))
        return;
    m_process.kill();
    m_process.waitForFinished(EndMs);
}

bool OtherHost::start(const QString& user, const QString& password, QString* error)
{
    if (!copyApplication(error))
        return false;
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QString::fromLatin1(StationsVariable));
    environment.insert(QString::fromLatin1(AccountVariable), user + QLatin1Char(':') + password);
    m_process.setProcessEnvironment(environment);
    m_process.start(m_folder.filePath(program), QStringList());
    *error = m_process.errorString();
    return m_process.waitForStarted(EndMs);
}

bool OtherHost::copyApplication(QString* error) const
{
    const QDir own(QCoreApplication::applicationDirPath());
    const QDir copy(m_folder.path());
    QDirIterator files(own.path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = own.relativeFilePath(files.next());
        if (file == AccountCache)
            continue;
        copy.mkpath(QFileInfo(file).path());
        if (!QFile::copy(own.filePath(file), copy.filePath(file))) {
            *error = QStringLiteral("cannot copy ") + own.filePath(file);
            return false;
        }
    }
    return true;
}

bool OtherHost::isSignedIn()
{
    m_output += m_process.readAll();
    return m_output.contains(SignedInLine);
}

} // namespace NelvoDevkit
