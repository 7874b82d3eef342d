#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace TestSupport {

//! \brief A replacement of the updater, which the pages know as `updater`: emits what a test requests, and
//!   records the calls.
class UpdaterStandIn : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString localVersion MEMBER m_localVersion NOTIFY localVersionChanged)
    Q_PROPERTY(QString latestVersion MEMBER m_latestVersion NOTIFY latestVersionChanged)
    Q_PROPERTY(QString changeLog MEMBER m_changeLog NOTIFY changeLogChanged)
    Q_PROPERTY(QStringList calls READ calls)

public:
    //! The calls so far: the function's name, followed by its arguments, separated by spaces.
    QStringList calls() const { return m_calls; }
    void clearCalls() { m_calls.clear(); }

    //! Removes the recorded calls and empties the texts.
    Q_INVOKABLE void reset();

    Q_INVOKABLE void checkVersion(const QString& url, const QString& token, const QString& productId);
    Q_INVOKABLE void download();
    Q_INVOKABLE void upgrade();

Q_SIGNALS:
    void needUpdate(bool need);
    void latestVersionChanged();
    void changeLogChanged();
    void localVersionChanged();
    void readyUpdateInfo(QString info);
    void readyUpdateError(QString error);
    void downloadStarted(QString filePath, qint64 bytesTotal);
    void downloadProgress(QString filePath, qint64 bytesReceived, qint64 bytesTotal);
    void downloadFinished(QString filePath);
    void upgradeStart();
    void upgradeProcess(float percent);
    void upgradeEnd();

private:
    QString m_localVersion;
    QString m_latestVersion;
    QString m_changeLog;
    QStringList m_calls;
};

} // namespace TestSupport
