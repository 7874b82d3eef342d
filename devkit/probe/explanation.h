#pragma once

#include <QString>
#include <QUrl>

namespace NelvoDevkit {

//! \brief What a text that the plug-in logs or returns means, for those who deploy the services.
//!
//! Empty for a text that is not known.
QString explain(const QString& text);

//! What a reply with an HTTP error says: its status, the reason phrase that Qt's text ends with, and the
//! path.
QString httpErrorWords(int status, const QString& error, const QUrl& url);

} // namespace NelvoDevkit
