#include "tests/sdk/binaryinterface/rows.h"

#include <algorithm>

namespace BinaryInterface {

namespace {

std::size_t aligned(std::size_t offset, std::size_t alignment)
{
    return (offset + alignment - 1) / alignment * alignment;
}

void expect(const std::string& what, std::size_t actual, std::size_t expected, Problems& problems)
{
    if (actual != expected)
        problems.push_back(what + " is " + std::to_string(actual) + ", not " + std::to_string(expected));
}

} // namespace

bool numbersApply()
{
#ifdef __GLIBCXX__
    return sizeof(void*) == 8;
#else
    return false;
#endif
}

void Layout::add(const std::string& name, std::size_t actualOffset, std::size_t numberInTable,
                 std::size_t size, std::size_t alignment, Problems& problems)
{
    expect("the offset of " + name, actualOffset, aligned(m_end, alignment), problems);
    if (numbersApply())
        expect("the offset of " + name + ", against the table's number,", actualOffset, numberInTable,
               problems);
    m_end = actualOffset + size;
    m_alignment = std::max(m_alignment, alignment);
}

void Layout::end(const std::string& name, std::size_t actualSize, std::size_t numberInTable,
                 std::size_t alignment, Problems& problems) const
{
    expect("the alignment of " + name, alignment, m_alignment, problems);
    expect("the size of " + name, actualSize, aligned(m_end, m_alignment), problems);
    if (numbersApply())
        expect("the size of " + name + ", against the table's number,", actualSize, numberInTable, problems);
}

} // namespace BinaryInterface
