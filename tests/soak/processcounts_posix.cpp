#include "tests/soak/processcounts.h"

#include <QDir>

namespace Soak {

namespace {

//! The entries of a directory of /proc, where each is a number.
int entriesOf(const char* directory)
{
    return QDir(QString::fromLatin1(directory))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace

int openHandles()
{
    return entriesOf("/proc/self/fd");
}

int threads()
{
    return entriesOf("/proc/self/task");
}

} // namespace Soak
