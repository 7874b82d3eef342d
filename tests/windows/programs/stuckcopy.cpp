#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

//! Stands in for a copy during which the machine loses its power: one file is there, another one half, and
//! then nothing more happens.
int main()
{
    namespace fs = std::filesystem;
    fs::remove("first.txt");
    fs::copy_file("NelvoUnCompress/first.txt", "first.txt");
    std::ofstream("second.txt") << "ne";
    std::ofstream("stuck.txt") << "here";
    std::this_thread::sleep_for(std::chrono::hours(1));
}
