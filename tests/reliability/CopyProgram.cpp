#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>

#include "configfiles/UserFile.h"
#include "support/Files.h"

// Makes a user's files from an installed default, for CopiesTest.
//
// CopyProgram DEFAULT FOLDER MICROSECONDS: makes the files 1, 2 and so on in FOLDER, and dies in the middle of it, that
// long after the first. Ends with their number, 255 at most. CopyProgram DEFAULT COPY: makes COPY as soon as the file
// DEFAULT.edit exists, reads it, and moves that file to its place if no other process has done so. Ends with 1 when it
// read a torn copy.

namespace
{
namespace fs = std::filesystem;
using Quenlor::Fraxo::SharedUtilities::Native::Provide;

[[noreturn]] void MakeAll(const std::string& installed, const std::string& folder, int microseconds)
{
    std::atomic<int> made = 0;
    std::thread{[&]
                {
        for (;; ++made)
            Provide({folder + '/' + std::to_string(made + 1), installed});
    }}.detach();
    while (made == 0)
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::microseconds{microseconds});
    std::_Exit(std::min<int>(made, 255));
}

int MakeOne(const std::string& installed, const fs::path& copy)
{
    const fs::path edit = installed + ".edit";
    while (!exists(edit) && !exists(copy))
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    Provide({copy.string(), installed});
    std::ifstream file;
    while (!file.is_open()) // Windows refuses it while the process that renames it has it open
        file.open(copy, std::ios::binary);
    const std::string seen{std::istreambuf_iterator<char>{file}, {}};
    file.close();
    std::error_code error;
    while (exists(edit)) // Windows refuses it while another process has the copy open
        rename(edit, copy, error);
    return seen == ReadFile(installed) || seen == "edited" ? 0 : 1;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc == 4)
        MakeAll(argv[1], argv[2], std::atoi(argv[3]));
    return MakeOne(argv[1], argv[2]);
}
