#pragma once

#include <QString>

namespace NelvoDevkit {
class Services;
struct Exchange;
} // namespace NelvoDevkit

namespace Docs {

//! A request with all its headers.
QString requestText(const NelvoDevkit::Exchange& exchange, const NelvoDevkit::Services& services);

//! A request and its reply, without the headers that every request has. Values that differ from run to run
//! are replaced: addresses by names, ids and tickets by "…". The JSON of a reply is folded, and a page
//! contains only the part that the plug-in reads.
QString exchangeText(const NelvoDevkit::Exchange& exchange, const NelvoDevkit::Services& services);

} // namespace Docs
