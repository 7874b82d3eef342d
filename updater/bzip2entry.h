#pragma once

#include <QIODevice>

#include <memory>

class QuaZip;

//! The current entry of a package, which is packed by bzip2; not open yet. It reads as any other entry does,
//! up to where it is damaged.
//!
//! QuaZip's own device never returns from reading data that ends too early. Therefore this device calls
//! libbz2 itself if QuaZip is built with bzip2. A QuaZip without bzip2 returns the packed data, and then the
//! end.
std::unique_ptr<QIODevice> bzip2Entry(QuaZip& zip);
