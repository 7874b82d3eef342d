#pragma once

#include <QString>

//! Unpacks an update package, a zip whose entry names are GB2312, into the directory `destDir`, which is
//! emptied first. Blocks; any thread. Needs memory for one piece of an entry at a time, and throws nothing.
//!
//! The content of a file is the entry that a search for its name finds, and this search reads names in the
//! system's code page. It finds the first of several entries with the same name, or none if the code page
//! reads the name differently. If an entry cannot be read, its file is empty or contains the readable part.
//! Directory entries are skipped. Names are not checked: a name with parent directories leads out of
//! `destDir`.
//!
//! Returns false and removes `destDir` if the package cannot be opened, its directory is damaged, a file
//! cannot be written, or the names exceed the memory.
bool unzipPackage(const QString& zipFile, const QString& destDir);
