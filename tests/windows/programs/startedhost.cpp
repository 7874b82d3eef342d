#include <cstdio>
#include <fstream>

//! Stands in for the editor that the batch file starts: says in its directory with how many arguments.
int main(int argc, char* /*argv*/[])
{
    std::ofstream("started.new") << argc - 1;
    // A reader of the file finds it whole.
    return std::rename("started.new", "started.txt");
}
