#include <chrono>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>

#include "configfiles/UserFile.h"
#include "support/Files.h"

// Makes a user's files from an installed default, for CopiesTest.
//
// CopyProgram DEFAULT FOLDER REPORTS: makes the files 1, 2 and so on in FOLDER until it is killed, and adds a byte to
// the file REPORTS for each. CopyProgram DEFAULT COPY EDIT GATE: makes COPY as soon as the file GATE exists, reads it,
// and moves the file EDIT to its place if no other process has done so. Ends with 2 when it read a torn copy.

namespace
{
namespace fs = std::filesystem;
using Quenlor::Fraxo::SharedUtilities::Native::Provide;

[[noreturn]] void MakeAll(const std::string& installed, const std::string& folder, const char* reports)
{
    std::ofstream report{reports, std::ios::binary};
    for (int number = 1;; ++number)
    {
        Provide({folder + '/' + std::to_string(number), installed});
        report << '.' << std::flush;
    }
}

int MakeOne(const std::string& installed, const fs::path& copy, const fs::path& edit, const fs::path& gate)
{
    const std::string content = ReadFile(installed);
    while (!exists(gate))
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    Provide({copy.string(), installed});
    std::ifstream file{copy, std::ios::binary};
    while (!file.is_open()) // Windows refuses it while the process that renames it has it open
    {
        std::this_thread::yield();
        file.open(copy, std::ios::binary);
    }
    const std::string seen{std::istreambuf_iterator<char>{file}, {}};
    file.close();
    std::error_code error;
    while (exists(edit)) // Windows refuses it while another process has the copy open
        rename(edit, copy, error);
    return seen == content || seen == "edited" ? 0 : 2;
}
} // namespace

int main(int argc, char** argv)
try
{
    if (argc == 4)
        MakeAll(argv[1], argv[2], argv[3]);
    return MakeOne(argv[1], argv[2], argv[3], argv[4]);
}
catch (const std::exception&)
{
    return 1;
}
