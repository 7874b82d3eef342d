#pragma once

#include <QString>

namespace NelvoDevkit {
class Services;
struct Exchange;
} // namespace NelvoDevkit

namespace Docs {

//! A request with all its headers.
QString requestText(const NelvoDevkit::Exchange& exchange, const NelvoDevkit::Services& services);

//! A request and its answer. Headers that every request has are left out, and what differs from run to run
//! is replaced: ports by names, ids and tickets by "…". JSON of answers is folded, and of pages that part is
//! shown which the plug-in reads.
QString exchangeText(const NelvoDevkit::Exchange& exchange, const NelvoDevkit::Services& services);

} // namespace Docs
