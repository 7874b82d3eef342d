#pragma once

#include <QElapsedTimer>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVector>

class QNetworkReply;

namespace NelvoDevkit {

//! \brief A message of Qt's log.
struct LoggedMessage {
    QtMsgType type = QtDebugMsg;
    QString text; //!< its beginning, if it is very long
};

//! \brief What the plug-in did for one request.
struct TracedExchange {
    QByteArray method;
    QUrl url;
    //! Where the answer came from: another address than `url` after a redirect.
    QUrl answeredBy;
    bool isFinished = false;
    //! Qt's text for a reply that failed; empty for a success.
    QString error;
    //! The HTTP status; 0 if no reply came so far.
    int status = 0;
    //! The names of the cookies that the request carried.
    QStringList cookies;
    //! From the end of the one before it, or the mark, to its own end, or so far.
    qint64 milliseconds = 0;
    //! What was logged from there to the next request, or to the end.
    QVector<LoggedMessage> messages;

    bool logged(const QString& text) const;
};

//! \brief While it lives, watches which requests the plug-in makes and what it logs. One at a time.
//!
//! A request shows by the first event that its reply gets, which comes with the first news from the server.
//! A request of another thread shows by its end only: the access manager of the GUI thread reports it, once
//! that manager has made a request itself. Watching changes nothing, but that log messages don't go on to the
//! terminal. GUI thread only; requests and messages may come from any thread.
class Trace final : public QObject
{
public:
    Trace();
    ~Trace() override;
    Q_DISABLE_COPY(Trace)

    //! A place in the trace.
    struct Mark {
        int requests = 0;
        int messages = 0;
        qint64 milliseconds = 0;
    };

    //! The present end of the trace.
    Mark mark() const;
    //! The requests since `mark`, in their order.
    QVector<TracedExchange> exchanges(const Mark& mark) const;
    //! Everything that was logged.
    QVector<LoggedMessage> messages() const;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    struct Request {
        const QNetworkReply* reply; //!< tells requests apart; it may be gone
        int firstMessage;
        qint64 end;
        TracedExchange exchange;
    };

    void begin(QNetworkReply& reply);
    void end(QNetworkReply* reply);
    void forget(const QObject* reply);

    QElapsedTimer m_clock;
    mutable QMutex m_mutex; //!< guards what follows
    QVector<Request> m_requests;
    //! The replies that exist and have been seen.
    QSet<const QObject*> m_replies;
};

} // namespace NelvoDevkit
