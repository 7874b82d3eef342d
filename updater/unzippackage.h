#pragma once

#include <QString>

//! Unpacks an update package, a zip whose entry names are GB2312, into the directory `destDir`, which is
//! wiped first. Blocks; any thread. No more than a piece of an entry is in memory at a time, and no exception
//! leaves.
//!
//! What stands in a file is what a look-up of its name finds, and that takes names in the system's code page:
//! the first of entries of the same name, or nothing at all under a code page that reads the name
//! differently. An entry that can't be read gives an empty file, or one with what could be read. Directory
//! entries leave nothing behind. Names are not checked: one with parent steps leads out of the directory.
//!
//! Returns false if the package can't be opened, its directory of entries is damaged, a file can't be written
//! or there is no memory for the names; `destDir` is removed then.
bool unzipPackage(const QString& zipFile, const QString& destDir);
