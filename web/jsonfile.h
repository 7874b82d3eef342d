#pragma once

#include <QMessageLogger>
#include <QString>

class QByteArray;
class QJsonDocument;
class QJsonObject;

//! \file
//! \brief JSON texts and whole files. Any thread; failures are results and are logged as warnings, which name
//! the place in the sources that `here` gives.

//! The present place in the sources.
#define NELVO_HERE QMessageLogger(QT_MESSAGELOG_FILE, QT_MESSAGELOG_LINE, QT_MESSAGELOG_FUNC)

//! Parses a JSON text. The document is null if the text is none.
QJsonDocument parseJson(const QByteArray& text, const QMessageLogger& here);

//! Reads a whole file, which may be a resource. On failure `bytes` stays as it was.
bool readFile(const QString& path, QByteArray& bytes, const QMessageLogger& here);

//! Replaces the content of a file, in place.
bool writeFile(const QString& path, const QByteArray& bytes, const QMessageLogger& here);

//! Reads a file that holds a JSON object; of JSON of another kind comes an empty one. On failure `result`
//! stays as it was.
bool readJsonFile(const QString& path, QJsonObject& result, const QMessageLogger& here);
