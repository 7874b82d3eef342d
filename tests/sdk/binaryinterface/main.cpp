#include "tests/sdk/binaryinterface/table.h"

#include <iostream>

//! Compares the public headers with the table of the binary interface. Links no Qt library, so it also runs
//! where Qt is not available for the compiler.
int main()
{
    const BinaryInterface::Problems problems = BinaryInterface::problemsWithTable();
    for (const std::string& problem : problems)
        std::cout << "FAIL: " << problem << '\n';
    if (!BinaryInterface::numbersApply())
        std::cout << "The table's offsets and sizes do not apply to this standard library: records were "
                     "compared by order and types only.\n";
    std::cout << problems.size() << " differences from the table\n";
    return problems.empty() ? 0 : 1;
}
