#pragma once

#include <QByteArray>
#include <QString>

namespace NelvoDevkit {

//! \brief The parts that the plug-in needs and the page of the sign-in form lacks, as text; empty if there
//!   are none.
QString formPageFault(const QByteArray& page);

} // namespace NelvoDevkit
