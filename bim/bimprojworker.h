#pragma once

#include <QJsonArray>
#include <QObject>
#include <QQueue>
#include <QString>

class QJsonObject;

namespace NelvoPlugin {

//! \brief Fetches the lists of BIM and DWG models on the thread that it lives in.
//!
//! A fetch blocks that thread until the service has answered, for which there is no time limit. It reads
//! the service's address from the application's property "sdkAddr". Answers come in the order of the
//! requests. The records of an answer are made by a helper thread that ends before the answer is told.
class CBimProjWorker final : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    //! A list as the dialog shows it; empty, with `bSuccess` false, after a failed call.
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

    //! Waiting a reply out pumps this thread's events, so a request can come in the middle of another. It
    //! waits here; the one that is served stands in front.
    QQueue<Source> m_requests;
};

} // namespace NelvoPlugin
