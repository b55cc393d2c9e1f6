#include <chrono>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>

#include "configfiles/UserFile.h"
#include "support/Files.h"

// Makes a user's files of an installed default, for CopiesTest.
//
// CopyProgram DEFAULT FOLDER NUMBER REPORTS: makes FOLDER/NUMBER and all after it until it is killed, and adds a byte
// to the file REPORTS for each.
// CopyProgram DEFAULT COPY EDIT GATE: makes COPY as soon as there is a file GATE, looks at it, and lets the first that
// comes put the file EDIT in its place. Ends with 2 when it saw a torn copy.

namespace
{
namespace fs = std::filesystem;
using Quenlor::Fraxo::SharedUtilities::Native::Provide;

void MakeAll(const std::string& installed, const std::string& folder, int number, const char* reports)
{
    std::ofstream report{reports, std::ios::binary};
    for (;; ++number)
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
    while (!file.is_open()) // Windows refuses it while the one who renames it still has it open
    {
        std::this_thread::yield();
        file.open(copy, std::ios::binary);
    }
    const std::string seen{std::istreambuf_iterator<char>{file}, {}};
    file.close();
    std::error_code error;
    while (exists(edit)) // Windows refuses as long as another has the copy open
        rename(edit, copy, error);
    return seen == content || seen == "edited" ? 0 : 2;
}
} // namespace

int main(int, char** argv)
try
{
    if (const int number = std::atoi(argv[3]))
        MakeAll(argv[1], argv[2], number, argv[4]);
    return MakeOne(argv[1], argv[2], argv[3], argv[4]);
}
catch (const std::exception&)
{
    return 1;
}
