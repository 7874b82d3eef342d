#pragma once

#include <QIODevice>

#include <memory>

class QuaZip;

//! The current entry of a package, which is packed by bzip2; not open yet. It reads as any other entry does,
//! up to where it is damaged.
//!
//! QuaZip's own entry never returns from reading data that ends too early. So this unpacks by itself where
//! QuaZip is built with bzip2. Where it is not, its own entry gives the data as it is packed, and comes to an
//! end.
std::unique_ptr<QIODevice> bzip2Entry(QuaZip& zip);
