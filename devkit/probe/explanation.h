#pragma once

#include <QString>
#include <QUrl>

namespace NelvoDevkit {

//! \brief Explains a text that the plug-in logs or returns to administrators of the services.
//!
//! Returns an empty string for an unknown text.
QString explain(const QString& text);

//! Describes a reply with an HTTP error: its status, the reason phrase at the end of Qt's text, and the path.
QString httpErrorWords(int status, const QString& error, const QUrl& url);

} // namespace NelvoDevkit
