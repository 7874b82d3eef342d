#include <cstdio>
#include <fstream>

//! A test double of the editor, which the batch file starts. Writes the number of its arguments to a file in
//! the current directory.
int main(int argc, char* /*argv*/[])
{
    std::ofstream("started.new") << argc - 1;
    // Renames the file after it is complete, so that a reader never finds an incomplete one.
    return std::rename("started.new", "started.txt");
}
