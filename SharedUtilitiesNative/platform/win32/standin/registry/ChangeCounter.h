#pragma once

#include <cstdint>
#include <string>

#include <sys/types.h>

#include "posix/FileDescriptor.h"

// A number in a small file beside a hive that tells readers in other processes, without a system call, whether the hive
// may have changed. It is odd while a new version takes its place and higher afterwards. A writer that is killed in
// between leaves it odd, which sends readers to the hive itself until the next writer is done.
//
// The file stays eight bytes long: readers have it mapped, so nobody may shorten it.

namespace Quenlor::StandIn::Registry
{
/// The reader's side.
class ChangeCounter final
{
public:
    ChangeCounter() noexcept = default;
    explicit ChangeCounter(const std::string& path) noexcept; ///< Reads as odd when the file is missing or unfit.
    ChangeCounter(ChangeCounter&& other) noexcept;
    ChangeCounter& operator=(ChangeCounter&& other) noexcept;
    ~ChangeCounter();

    std::uint64_t Read() const noexcept;
    static bool IsSettled(std::uint64_t number) noexcept { return number % 2 == 0; }

private:
    std::uint64_t* m_number = nullptr;
};

/// The writer's side: the number is odd from the beginning to the end of its life. Its maker holds the lock of the
/// hive.
class ChangeAnnouncement final
{
public:
    ChangeAnnouncement(const std::string& path, mode_t mode); ///< Makes the file if missing. Throws std::system_error.
    ChangeAnnouncement(const ChangeAnnouncement&) = delete;
    ChangeAnnouncement& operator=(const ChangeAnnouncement&) = delete;
    ~ChangeAnnouncement();

private:
    Posix::FileDescriptor m_file;
    std::uint64_t m_number = 0;
};
} // namespace Quenlor::StandIn::Registry
