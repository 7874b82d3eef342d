#pragma once

#include <QJsonObject>

namespace NelvoPlugin {

//! \file
//! \brief The flat records of the dialog's lists, made from the service's rows. Any thread.
//!
//! A value that a row lacks, or has as another type, becomes 0 or an empty text.

//! Record of a row of the BIM list.
QJsonObject bimRecord(const QJsonObject& row);

//! Record of a row of the DWG list, which has no size.
QJsonObject dwgRecord(const QJsonObject& row);

} // namespace NelvoPlugin
