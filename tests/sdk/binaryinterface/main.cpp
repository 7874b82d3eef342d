#include "tests/sdk/binaryinterface/table.h"

#include <iostream>

//! Compares the public headers with the table of the binary interface. Uses no Qt library, so it also runs on
//! systems without a Qt for the compiler.
int main()
{
    const BinaryInterface::Problems problems = BinaryInterface::problemsWithTable();
    for (const std::string& problem : problems)
        std::cout << "FAIL: " << problem << '\n';
    if (!BinaryInterface::numbersApply())
        std::cout << "The numbers of bytes are another standard library's: records were compared by order "
                     "and types.\n";
    std::cout << problems.size() << " differences from the table\n";
    return problems.empty() ? 0 : 1;
}
