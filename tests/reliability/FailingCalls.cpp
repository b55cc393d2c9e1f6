#include "reliability/FailingCalls.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace
{
FailingCalls::Plan g_plan;
std::vector<FailingCalls::Call> g_calls;
bool g_isRecording = false; // before Begin nothing is touched that may not have been constructed

/// What happens to the call that comes next; 0 for nothing.
int NextFault(const char* call)
{
    if (!g_isRecording || g_plan.first == 0)
        return 0;
    const std::size_t number = g_calls.size() + 1;
    const bool isTurn = number == g_plan.first || (g_plan.isLasting && number > g_plan.first);
    return isTurn && g_plan.CanHappenTo(call) ? g_plan.fault : 0;
}

/// The function of the C library.
template<auto Function>
auto Next(const char* name)
{
    static const auto next = reinterpret_cast<decltype(Function)>(::dlsym(RTLD_NEXT, name));
    return next;
}

/// The absolute path of a name in an open folder.
std::string PathOf(int folder, std::filesystem::path name)
{
    char target[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    const ssize_t length = Next<&::readlink>("readlink")(link.c_str(), target, sizeof target);
    if (length > 0)
        name = std::string{target, static_cast<std::size_t>(length)} / name; // an absolute one stays
    const std::string path = name.lexically_normal();
    return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
}

template<auto Function, typename... Arguments>
auto Attempt(const char* name, Arguments... arguments)
{
    using Result = decltype(Function(arguments...));
    const int fault = NextFault(name);
    if (fault == FailingCalls::Killed)
        ::raise(SIGKILL);
    const Result failure = std::is_pointer_v<Result> ? Result{} : Result(-1L);
    Result result{};
    if (fault > 0)
        errno = fault, result = failure;
    else if (std::string_view{name} != "fsync")
        result = Next<Function>(name)(arguments...);
    if (!g_isRecording)
        return result;
    FailingCalls::Call& call = g_calls.emplace_back(FailingCalls::Call{.name = name, .isDone = result != failure});
    if (!call.isDone) // errno stays
        return result;
    if constexpr (std::is_same_v<Result, int>)
        call.result = result;
    call.number = AT_FDCWD;
    const auto add = [&call]([[maybe_unused]] auto argument)
    {
        if constexpr (std::is_same_v<decltype(argument), const char*>)
            call.paths.push_back(PathOf(call.number, argument));
        else if constexpr (std::is_same_v<decltype(argument), int>)
            call.number = argument;
    };
    (add(arguments), ...);
    return result;
}

mode_t ModeOf(int flags, std::va_list rest)
{
    const bool hasMode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return hasMode ? va_arg(rest, mode_t) : 0;
}

/// How much the next call transfers.
std::size_t Share(const char* call, std::size_t length)
{
    return NextFault(call) == FailingCalls::HalfTransfer ? (length + 1) / 2 : length;
}
} // namespace

void FailingCalls::Begin(const Plan& plan)
{
    g_plan = plan;
    g_calls.clear();
    g_isRecording = true;
}

std::vector<FailingCalls::Call> FailingCalls::End()
{
    g_isRecording = false;
    return std::move(g_calls);
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
int fsync(int file) { return Attempt<&fsync>("fsync", file); }
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
ssize_t read(int file, void* data, std::size_t length) { return Attempt<&read>("read", file, data, Share("read", length)); }
}
// clang-format on

extern "C" ssize_t write(int file, const void* data, std::size_t length)
{
    const ssize_t count = Attempt<&write>("write", file, data, Share("write", length));
    if (g_isRecording && count > 0)
    {
        g_calls.back().at = static_cast<std::size_t>(::lseek(file, 0, SEEK_CUR) - count);
        g_calls.back().data.assign(static_cast<const char*>(data), static_cast<std::size_t>(count));
    }
    return count;
}

extern "C" int close(int file)
{
    if (NextFault("close") > 0)
        Next<&close>("close")(file); // whatever it answers, the descriptor is gone
    return Attempt<&close>("close", file);
}

extern "C" int openat(int folder, const char* path, int flags, ...)
{
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = ModeOf(flags, rest);
    va_end(rest);
    return Attempt<&openat>("openat", folder, path, flags, mode);
}

extern "C" int open(const char* path, int flags, ...)
{
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = ModeOf(flags, rest);
    va_end(rest);
    return openat(AT_FDCWD, path, flags, mode);
}
