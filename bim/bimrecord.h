#pragma once

#include <QJsonObject>

namespace NelvoPlugin {

//! \file
//! \brief Converts the service's rows to the flat records of the dialog's lists. Any thread.
//!
//! A value that is missing or has another type becomes 0 or an empty string.

//! The record of a row of the BIM list.
QJsonObject bimRecord(const QJsonObject& row);

//! The record of a row of the DWG list, which has no size.
QJsonObject dwgRecord(const QJsonObject& row);

} // namespace NelvoPlugin
