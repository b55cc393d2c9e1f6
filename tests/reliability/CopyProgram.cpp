#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>

#include "configfiles/UserFile.h"
#include "support/Files.h"

// CopyProgram DEFAULT FOLDER REST MICROSECONDS, for CopiesTest: makes the user's files 1, 2 and so on in FOLDER from an
// installed default, and edits each whose number has this rest when it is divided by 4. Dies in the middle of it, that
// long after the first. Ends with the number of files, 200 at most, or with 255 if one was torn or
// could not be made.

namespace
{
namespace fs = std::filesystem;

std::atomic<int> made = 0;

void MakeAll(const std::string& installed, const std::string& folder, int rest)
{
    const std::string content = ReadFile(installed);
    const fs::path edit = folder + ".edit" + std::to_string(rest);
    for (int number = 1;; ++number)
    {
        const fs::path copy = fs::path{folder} / std::to_string(number);
        Quenlor::Fraxo::SharedUtilities::Native::Provide({copy.string(), installed});
        std::ifstream file;
        while (!file.is_open()) // Windows refuses it while a process that renames it has it open
            file.open(copy, std::ios::binary);
        const std::string seen{std::istreambuf_iterator<char>{file}, {}};
        file.close();
        if (seen != content && seen != "edited")
            std::_Exit(255);
        if (number % 4 == rest)
        {
            WriteFile(edit, "edited");
            std::error_code error;
            while (exists(edit)) // Windows refuses it while another process has the copy open
                rename(edit, copy, error);
        }
        made = number;
    }
}
} // namespace

int main(int, char** argv)
{
    std::set_terminate([] { std::_Exit(255); });
    std::thread{MakeAll, std::string{argv[1]}, std::string{argv[2]}, std::atoi(argv[3])}.detach();
    while (made == 0)
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::microseconds{std::atoi(argv[4])});
    std::_Exit(std::min<int>(made, 200));
}
