#pragma once

#include <QIODevice>

#include <memory>

class QuaZip;

//! The current entry of a package, packed by bzip2; not open yet. It reads like any other entry, up to the
//! first damaged data.
//!
//! QuaZip's own device never returns if the data ends too early. So this device calls libbz2 itself if QuaZip
//! is built with bzip2. A QuaZip without bzip2 returns the packed data, then the end.
std::unique_ptr<QIODevice> bzip2Entry(QuaZip& zip);
