#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

//! A test double of xcopy at a power failure. Copies one file and a part of another one, then waits for an
//! hour.
int main()
{
    namespace fs = std::filesystem;
    fs::remove("first.txt");
    fs::copy_file("NelvoUnCompress/first.txt", "first.txt");
    std::ofstream("second.txt") << "ne";
    std::ofstream("stuck.txt") << "here";
    std::this_thread::sleep_for(std::chrono::hours(1));
}
