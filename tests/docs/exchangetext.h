#pragma once

#include <QString>

namespace NelvoDevkit {
class Services;
struct Exchange;
} // namespace NelvoDevkit

namespace Docs {

//! A request with all its headers.
QString requestText(const NelvoDevkit::Exchange& exchange, const NelvoDevkit::Services& services);

//! A request and its reply, without headers that every request has. Values that differ from run to run are
//! replaced: ports by names, ids and tickets by "…". JSON of replies is folded, and of a page only the part
//! that the plug-in reads is shown.
QString exchangeText(const NelvoDevkit::Exchange& exchange, const NelvoDevkit::Services& services);

} // namespace Docs
