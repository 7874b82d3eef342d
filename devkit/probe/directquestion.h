#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace NelvoDevkit {

//! \brief The reply to a request of the probe itself. The probe sends such a request if the plug-in's result
//!   does not show the cause of a failure.
struct DirectAnswer {
    //! Empty after a success.
    QString error;
    //! The error of the server's certificate; empty if there is none.
    QString certificateError;
    QByteArray body;
    //! The HTTP status; 0 without a reply.
    int status = 0;
};

//! Sends a GET to `url`, follows redirects and uses no cookies. Blocks without a timeout and processes events
//! meanwhile.
DirectAnswer askDirectly(const QUrl& url);
//! The same, but reads only the head of the reply.
DirectAnswer askForHead(const QUrl& url);
//! The same with a POST of JSON that does not follow redirects.
DirectAnswer askDirectly(const QUrl& url, const QByteArray& json);

} // namespace NelvoDevkit
