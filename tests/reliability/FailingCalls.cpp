#include "reliability/FailingCalls.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

// Mode, owner and times are not recorded.
constexpr std::string_view ChangesOfNames[] = {"linkat",    "mkdir",  "mkdirat", "renameat",
                                               "renameat2", "unlink", "unlinkat"};
constexpr std::string_view Transfers[] = {"read", "write"};
constexpr std::string_view Waits[] = {"open", "fsync", "flock", "close"};

FailingCalls::Plan g_plan;
const char* g_calls[4096]; // no container: this may run before anything is constructed
std::size_t g_count = 0;
bool g_isInUse = false;

bool Has(const auto& names, std::string_view name)
{
    return std::ranges::find(names, name) != std::end(names);
}

/// Counts a call. @return what happens to it; 0 for nothing
int FaultOf(const char* name)
{
    if (!g_isInUse)
        return 0;
    g_calls[g_count++ % std::size(g_calls)] = name;
    const bool isTurn = g_count == g_plan.first || (g_plan.isLasting && g_count > g_plan.first && g_plan.first != 0);
    if (!isTurn || !FailingCalls::CanHappen(g_plan.fault, name))
        return 0;
    if (g_plan.fault == FailingCalls::Killed)
        ::raise(SIGKILL);
    return g_plan.fault;
}

void Record(const FailingCalls::Change& change)
{
    if (g_plan.record)
        g_plan.record->push_back(change);
}

/// The function of the C library.
template<auto Function>
auto Next(const char* name)
{
    static const auto next = reinterpret_cast<decltype(Function)>(::dlsym(RTLD_NEXT, name));
    return next;
}

/// The absolute path of a name in an open folder.
std::string PathOf(int folder, const char* name)
{
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    const ssize_t length = name[0] == '/' ? 0 : Next<&::readlink>("readlink")(link.c_str(), path, sizeof path);
    const fs::path whole = fs::path{path, path + std::max<ssize_t>(length, 0)} / name;
    const std::string normal = whole.lexically_normal();
    return normal.ends_with('/') ? normal.substr(0, normal.size() - 1) : normal;
}

template<typename Result>
Result Fail(int error)
{
    errno = error;
    if constexpr (std::is_pointer_v<Result>)
        return nullptr;
    else
        return -1;
}

template<auto Function, typename... Arguments>
auto Attempt(const char* name, Arguments... arguments)
{
    using Result = decltype(Function(arguments...));
    const int fault = FaultOf(name);
    const Result result = fault ? Fail<Result>(fault) : Next<Function>(name)(arguments...);
    if (result == Result{} && g_plan.record && Has(ChangesOfNames, name))
    {
        FailingCalls::Change change{.call = name};
        int folder = AT_FDCWD;
        const auto add = [&]([[maybe_unused]] auto argument)
        {
            if constexpr (std::is_same_v<decltype(argument), const char*>)
                change.paths.push_back(PathOf(folder, argument));
            else if constexpr (std::is_same_v<decltype(argument), int>)
                folder = argument;
        };
        (add(arguments), ...);
        g_plan.record->push_back(change);
    }
    return result;
}

mode_t ModeOf(int flags, std::va_list rest)
{
    const bool hasMode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return hasMode ? va_arg(rest, mode_t) : 0;
}

std::size_t LengthUnder(int fault, std::size_t length)
{
    return fault == FailingCalls::HalfTransfer ? (length + 1) / 2 : length;
}
} // namespace

void FailingCalls::Begin(const Plan& plan)
{
    g_plan = plan;
    g_count = 0;
    g_isInUse = true;
}

std::vector<std::string> FailingCalls::End()
{
    g_plan = {};
    if (g_count > std::size(g_calls))
        std::abort();
    return {g_calls, g_calls + g_count};
}

bool FailingCalls::CanHappen(int fault, const std::string& call)
{
    if (fault == EINTR)
        return Has(Waits, call) || Has(Transfers, call);
    return fault != HalfTransfer || Has(Transfers, call);
}

// One line each, as the compiler wants them declared.
// clang-format off
extern "C"
{
int access(const char* path, int mode) noexcept { return Attempt<&access>("access", path, mode); }
int faccessat(int folder, const char* path, int mode, int flags) noexcept { return Attempt<&faccessat>("faccessat", folder, path, mode, flags); }
int fchmod(int file, mode_t mode) noexcept { return Attempt<&fchmod>("fchmod", file, mode); }
int fchown(int file, uid_t user, gid_t group) noexcept { return Attempt<&fchown>("fchown", file, user, group); }
int flock(int file, int operation) noexcept { return Attempt<&flock>("flock", file, operation); }
int fstat(int file, struct stat* status) noexcept { return Attempt<&fstat>("fstat", file, status); }
int futimens(int file, const struct timespec* times) noexcept { return Attempt<&futimens>("futimens", file, times); }
int mkdir(const char* path, mode_t mode) noexcept { return Attempt<&mkdir>("mkdir", path, mode); }
int getentropy(void* data, std::size_t length) { return Attempt<&getentropy>("getentropy", data, length); }
int linkat(int first, const char* from, int second, const char* to, int flags) noexcept { return Attempt<&linkat>("linkat", first, from, second, to, flags); }
DIR* opendir(const char* path) { return Attempt<&opendir>("opendir", path); }
struct dirent* readdir(DIR* folder) { return Attempt<&readdir>("readdir", folder); }
ssize_t readlink(const char* path, char* target, std::size_t length) noexcept { return Attempt<&readlink>("readlink", path, target, length); }
int renameat2(int first, const char* from, int second, const char* to, unsigned flags) noexcept { return Attempt<&renameat2>("renameat2", first, from, second, to, flags); }
int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept { return Attempt<&fstatat>("fstatat", folder, path, status, flags); }
int mkdirat(int folder, const char* path, mode_t mode) noexcept { return Attempt<&mkdirat>("mkdirat", folder, path, mode); }
ssize_t readlinkat(int folder, const char* path, char* target, std::size_t length) noexcept { return Attempt<&readlinkat>("readlinkat", folder, path, target, length); }
int renameat(int first, const char* from, int second, const char* to) noexcept { return Attempt<&renameat>("renameat", first, from, second, to); }
int unlinkat(int folder, const char* path, int flags) noexcept { return Attempt<&unlinkat>("unlinkat", folder, path, flags); }
int stat(const char* path, struct stat* status) noexcept { return Attempt<&stat>("stat", path, status); }
int unlink(const char* path) noexcept { return Attempt<&unlink>("unlink", path); }
}
// clang-format on

extern "C" ssize_t read(int file, void* data, std::size_t length)
{
    const int fault = FaultOf("read");
    return fault > 0 ? Fail<ssize_t>(fault) : Next<&read>("read")(file, data, LengthUnder(fault, length));
}

extern "C" ssize_t write(int file, const void* data, std::size_t length)
{
    const int fault = FaultOf("write");
    if (fault > 0)
        return Fail<ssize_t>(fault);
    const ssize_t count = Next<&write>("write")(file, data, LengthUnder(fault, length));
    if (count > 0 && g_plan.record)
    {
        const off_t start = ::lseek(file, 0, SEEK_CUR) - count;
        const std::string text(static_cast<const char*>(data), static_cast<std::size_t>(count));
        Record({.call = "write", .file = file, .at = static_cast<std::size_t>(start), .data = text});
    }
    return count;
}

extern "C" int fsync(int file)
{
    const int fault = FaultOf("fsync");
    if (fault)
        return Fail<int>(fault);
    Record({.call = "fsync", .file = file});
    return g_isInUse ? 0 : Next<&fsync>("fsync")(file);
}

extern "C" int close(int file)
{
    const int result = Next<&close>("close")(file); // whatever it answers, the descriptor is gone
    const int fault = FaultOf("close");
    return fault ? Fail<int>(fault) : result;
}

extern "C" int openat(int folder, const char* path, int flags, ...)
{
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = ModeOf(flags, rest);
    va_end(rest);
    const int fault = FaultOf("open");
    if (!fault && !g_plan.hasUnnamedFiles && (flags & O_TMPFILE) == O_TMPFILE)
        return Fail<int>(EOPNOTSUPP);
    const int file = fault ? Fail<int>(fault) : Next<&openat>("openat")(folder, path, flags, mode);
    if (file >= 0 && g_plan.record)
        Record({.call = "open", .paths = {PathOf(folder, path)}, .file = file, .flags = flags});
    return file;
}

extern "C" int open(const char* path, int flags, ...)
{
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = ModeOf(flags, rest);
    va_end(rest);
    return openat(AT_FDCWD, path, flags, mode);
}
