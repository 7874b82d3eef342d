#pragma once

#include <QMessageLogger>
#include <QString>

class QByteArray;
class QJsonDocument;
class QJsonObject;

//! \file
//! \brief JSON texts and whole files. Any thread. A failure is returned, and logged as a warning with the
//!   source location `here`.

//! The current source location.
#define NELVO_HERE QMessageLogger(QT_MESSAGELOG_FILE, QT_MESSAGELOG_LINE, QT_MESSAGELOG_FUNC)

//! Parses a JSON text. Returns a null document if the text is invalid.
QJsonDocument parseJson(const QByteArray& text, const QMessageLogger& here);

//! Reads a whole file or resource. On failure, `bytes` is unchanged.
bool readFile(const QString& path, QByteArray& bytes, const QMessageLogger& here);

//! Replaces the content of a file in place.
bool writeFile(const QString& path, const QByteArray& bytes, const QMessageLogger& here);

//! Reads a file that contains a JSON object. For any other JSON, `result` is an empty object. On failure,
//! `result` is unchanged.
bool readJsonFile(const QString& path, QJsonObject& result, const QMessageLogger& here);
