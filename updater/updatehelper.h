#pragma once

#include <QString>

class QByteArray;
class QJsonObject;

//! \file
//! \brief Whole files and their checksums. Any thread. A failure is returned and logged as a warning.

//! Reads a whole file or resource. On failure, `bytes` is unchanged.
bool readFileBytes(const QString& path, QByteArray& bytes);

//! Replaces the content of a file in place.
bool writeFileBytes(const QString& path, const QByteArray& bytes);

//! Reads a file that contains a JSON object. For any other JSON, `result` is an empty object. On failure,
//! `result` is unchanged.
bool readJsonObject(const QString& path, QJsonObject& result);

//! Whether the MD5 of the file is `expectedMd5`, hexadecimal in either case. Maps the file into memory
//! instead of reading it. Fails for an empty file, which cannot be mapped, and for a file of 2 GiB or more,
//! which is not hashed completely.
bool checkMd5(const QString& filePath, const QString& expectedMd5);

//! Removes a file, or a directory with its content. Logs nothing.
void removePath(const QString& path);
