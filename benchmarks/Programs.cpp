#include "Programs.h"

#include <filesystem>
#include <stdexcept>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Measurement.h"

namespace Benchmarks
{
std::string OwnPath()
{
    return std::filesystem::read_symlink("/proc/self/exe");
}

int Run(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    pid_t process = 0;
    int status = 0;
    if (::posix_spawn(&process, arguments[0], nullptr, nullptr, arguments.data(), ::environ) != 0 ||
        ::waitpid(process, &status, 0) != process)
        throw std::runtime_error("cannot run " + command.front());
    return status;
}

void AddProgramStart(Measurements& measurements)
{
    const auto start = [](const char* program)
    { return [=]() -> Operation { return [=] { Use(static_cast<std::size_t>(Run({program}))); }; }; };
    const std::string task = "start a program";
    measurements.push_back({task, "with the library", Role::Ours, start(PROGRAM_WITH_LIBRARY)});
    measurements.push_back({task, "empty", Role::Floor, start(EMPTY_PROGRAM)});
}
} // namespace Benchmarks
