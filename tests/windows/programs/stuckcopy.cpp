#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

//! Acts like a copy during a power failure: copies one file, half of another one, and then waits forever.
int main()
{
    namespace fs = std::filesystem;
    fs::remove("first.txt");
    fs::copy_file("NelvoUnCompress/first.txt", "first.txt");
    std::ofstream("second.txt") << "ne";
    std::ofstream("stuck.txt") << "here";
    std::this_thread::sleep_for(std::chrono::hours(1));
}
