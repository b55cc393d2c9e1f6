#include "registry/ChangeCounter.h"

#include <atomic>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "posix/RetryInterrupted.h"
#include "registry/HiveFile.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
using Number = std::atomic_ref<std::uint64_t>;
static_assert(Number::is_always_lock_free, "read through a mapping that cannot be written");

constexpr std::uint64_t NotThere = 1;

/// Reads or writes the whole number, or what there is of it. @return how many bytes; negative when a call fails
template<typename Transfer, typename Byte>
ssize_t TransferAll(Transfer transfer, const Posix::FileDescriptor& file, Byte* bytes) noexcept
{
    std::size_t done = 0;
    while (done < sizeof(std::uint64_t))
    {
        const auto rest = [&]
        { return transfer(file.get(), bytes + done, sizeof(std::uint64_t) - done, static_cast<off_t>(done)); };
        const ssize_t count = Posix::RetryInterrupted(rest);
        if (count < 0)
            return count;
        if (count == 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<ssize_t>(done);
}

// Written by a call, not through a mapping: a full disk gives an error then, and no signal. A reader that sees half of
// the number sees it before the change is done, when the state before is still the right answer.
bool Store(const Posix::FileDescriptor& file, std::uint64_t number) noexcept
{
    return TransferAll(::pwrite, file, reinterpret_cast<const char*>(&number)) >= 0;
}
} // namespace

ChangeCounter::ChangeCounter(const std::string& path) noexcept
{
    const Posix::FileDescriptor file{::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)};
    struct stat status;
    // A page without a byte of the file behind it must not be touched.
    if (!file || ::fstat(file.get(), &status) != 0 || status.st_size < static_cast<off_t>(sizeof *m_number))
        return;
    void* const page = ::mmap(nullptr, sizeof *m_number, PROT_READ, MAP_SHARED, file.get(), 0);
    if (page != MAP_FAILED)
        m_number = static_cast<std::uint64_t*>(page);
}

ChangeCounter::ChangeCounter(ChangeCounter&& other) noexcept : m_number{std::exchange(other.m_number, nullptr)} {}

ChangeCounter& ChangeCounter::operator=(ChangeCounter&& other) noexcept
{
    std::swap(m_number, other.m_number);
    return *this;
}

ChangeCounter::~ChangeCounter()
{
    if (m_number)
        ::munmap(m_number, sizeof *m_number);
}

std::uint64_t ChangeCounter::Read() const noexcept
{
    return m_number ? Number{*m_number}.load(std::memory_order_acquire) : NotThere;
}

ChangeAnnouncement::ChangeAnnouncement(const std::string& path, mode_t mode)
    : m_file{Posix::RetryInterrupted(
          [&] { return ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, mode); })}
{
    if (!m_file)
        ThrowSystemError();
    const ssize_t length = TransferAll(::pread, m_file, reinterpret_cast<char*>(&m_number));
    if (length < 0) // to start again at 0 could lead to a number that a reader has seen before
        ThrowSystemError();
    if (length < static_cast<ssize_t>(sizeof m_number))
    {
        m_number = 0;
        if (::fchmod(m_file.get(), mode) != 0) // new: whatever the umask says
            ThrowSystemError();
    }
    m_number |= 1;
    if (!Store(m_file, m_number))
        ThrowSystemError();
}

ChangeAnnouncement::~ChangeAnnouncement()
{
    Store(m_file, m_number + 1); // if this fails it stays odd, which costs readers time and nothing else
}
} // namespace Quenlor::StandIn::Registry
