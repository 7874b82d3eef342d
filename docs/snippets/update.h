#pragma once

#include <QObject>
#include <QString>

namespace Snippets {

QObject* findUpdater();

//! [update-class]
//! The self-update with a user interface of the host's own.
class Update : public QObject
{
    Q_OBJECT

public:
    explicit Update(QObject* updater);

    //! Blocks up to 30 seconds.
    void check(const QString& url, const QString& token, const QString& productId);
    void download();
    //! For Windows only. Ends the application.
    void install();

Q_SIGNALS:
    void offered(const QString& version, const QString& notes);
    void progress(const QString& package, qint64 received, qint64 total);
    void downloaded();
    void message(const QString& text);

private Q_SLOTS:
    void answer(bool isNewer);

private:
    QObject* m_updater;
};
//! [update-class]

} // namespace Snippets
