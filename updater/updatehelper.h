#pragma once

#include <QString>

class QByteArray;
class QJsonObject;

//! \file
//! \brief Whole files, and their checksums. Any thread; failures are results and are logged as warnings.

//! Reads a whole file, which may be a resource. On failure `bytes` stays as it was.
bool readFileBytes(const QString& path, QByteArray& bytes);

//! Replaces the content of a file, in place.
bool writeFileBytes(const QString& path, const QByteArray& bytes);

//! Reads a file that holds a JSON object; of JSON of another kind comes an empty one. On failure `result`
//! stays as it was.
bool readJsonObject(const QString& path, QJsonObject& result);

//! Whether the MD5 of the file is `expectedMd5`, hexadecimal in either case. The file is mapped rather than
//! read, so no memory of its size is used up. An empty file can't be mapped, and one of 2 GiB or more is not
//! hashed whole: both fail.
bool checkMd5(const QString& filePath, const QString& expectedMd5);

//! Removes a file, or a directory with all that is in it. Nothing is logged.
void removePath(const QString& path);
