#pragma once

#include <QByteArray>
#include <QString>

namespace NelvoDevkit {

//! \brief What the page of the sign-in form lacks for the plug-in, in words; empty if it has all.
QString formPageFault(const QByteArray& page);

} // namespace NelvoDevkit
