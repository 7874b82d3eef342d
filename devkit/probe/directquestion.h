#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace NelvoDevkit {

//! \brief The answer to a question that the probe asks beside the plug-in, where that cannot tell what is
//! wrong.
struct DirectAnswer {
    //! Empty for a success.
    QString error;
    //! What is wrong with the server's certificate, if anything is.
    QString certificateError;
    QByteArray body;
    //! The HTTP status; 0 if no reply came.
    int status = 0;
};

//! GETs `url`, following redirects, as a client without any cookies. Blocks without a time limit while it
//! pumps events.
DirectAnswer askDirectly(const QUrl& url);
//! GETs the head of the reply only, and otherwise the same.
DirectAnswer askForHead(const QUrl& url);
//! POSTs JSON there, without following redirects; otherwise the same.
DirectAnswer askDirectly(const QUrl& url, const QByteArray& json);

} // namespace NelvoDevkit
