#pragma once

#include <QJsonArray>
#include <QObject>
#include <QQueue>
#include <QString>

class QJsonObject;

namespace NelvoPlugin {

//! \brief Fetches the lists of BIM and DWG models on its own thread.
//!
//! A fetch blocks that thread until the service has replied, without a timeout. It reads the service's
//! address from the application's property "sdkAddr". Replies are delivered in the order of the requests. A
//! helper thread converts a reply to records; it ends before the reply is emitted.
class CBimProjWorker final : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    //! A list in the form of the dialog; empty, with `bSuccess` false, after a failure.
    void sigSyncBimProjList(QJsonArray array, bool bSuccess);

public Q_SLOTS:
    void getBimProjList();
    void getDWGBimProjList();

private:
    //! One of the service's lists.
    struct Source {
        QString path;
        QJsonObject (*record)(const QJsonObject& row);
        const char* failure;
    };

    void request(const Source& source);
    void serve();
    void fetch(const Source& source);

    //! The wait for a reply processes this thread's events, so a request can arrive during another one. It is
    //! stored here; the first request is running.
    QQueue<Source> m_requests;
};

} // namespace NelvoPlugin
