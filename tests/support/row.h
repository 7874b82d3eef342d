#pragma once

#include <QTest>

namespace TestSupport {

//! Adds a row to the table of a test, with a value for each column.
template <typename... Values>
void row(const char* name, const Values&... values)
{
    (QTest::newRow(name) << ... << values);
}

} // namespace TestSupport
