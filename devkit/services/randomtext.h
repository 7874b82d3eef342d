#pragma once

#include <QByteArray>
#include <QRandomGenerator>

namespace NelvoDevkit {

//! `length` random characters of `alphabet`, for session ids and tickets.
inline QByteArray randomText(int length, const QByteArray& alphabet)
{
    QByteArray text(length, Qt::Uninitialized);
    for (char& character : text)
        character = alphabet.at(QRandomGenerator::global()->bounded(alphabet.size()));
    return text;
}

} // namespace NelvoDevkit
