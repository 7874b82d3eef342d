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
    QString text; //!< only its beginning, if it is very long
};

//! \brief A request of the plug-in, with its reply and log messages.
struct TracedExchange {
    QByteArray method;
    QUrl url;
    //! The address that replied: after a redirect it differs from `url`.
    QUrl answeredBy;
    bool isFinished = false;
    //! Qt's text for a failed reply; empty after a success.
    QString error;
    //! The HTTP status; 0 if there is no reply yet.
    int status = 0;
    //! The names of the cookies in the request.
    QStringList cookies;
    //! From the end of the previous request, or from the mark, to the end of this one, or until now.
    qint64 milliseconds = 0;
    //! The messages from that time until the next request or the end.
    QVector<LoggedMessage> messages;

    bool logged(const QString& text) const;
};

//! \brief While it exists, records the plug-in's requests and log messages. One at a time.
//!
//! The first event of a reply reveals its request; it is sent with the first data from the server. A request
//! of another thread is visible only at its end: the access manager of the GUI thread reports it, after that
//! manager has sent a request itself. Log messages are not passed to the terminal; apart from this, recording
//! changes nothing. GUI thread only; requests and messages may come from any thread.
class Trace final : public QObject
{
public:
    Trace();
    ~Trace() override;
    Q_DISABLE_COPY(Trace)

    //! A position in the trace.
    struct Mark {
        int requests = 0;
        int messages = 0;
        qint64 milliseconds = 0;
    };

    //! The current end of the trace.
    Mark mark() const;
    //! The requests since `mark`, in order.
    QVector<TracedExchange> exchanges(const Mark& mark) const;
    //! All log messages.
    QVector<LoggedMessage> messages() const;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    struct Request {
        const QNetworkReply* reply; //!< identifies the request; may have been deleted
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
    //! The existing replies that have been recorded.
    QSet<const QObject*> m_replies;
};

} // namespace NelvoDevkit
