#include "registry/ChangeCounter.h"

#include <atomic>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "registry/HiveFile.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
using Number = std::atomic_ref<std::uint64_t>;
static_assert(Number::is_always_lock_free, "read through a mapping that cannot be written");

constexpr std::uint64_t NotThere = 1;

// Written by a call, not through a mapping: a full disk gives an error then, and no signal. A reader that sees half of
// the number sees it before the change is done, when the state before is still the right answer.
bool Store(const Posix::FileDescriptor& file, std::uint64_t number) noexcept
{
    return ::pwrite(file.get(), &number, sizeof number, 0) == static_cast<ssize_t>(sizeof number);
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
    : m_file{::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, mode)}
{
    if (!m_file)
        ThrowSystemError();
    if (::pread(m_file.get(), &m_number, sizeof m_number, 0) != static_cast<ssize_t>(sizeof m_number))
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
