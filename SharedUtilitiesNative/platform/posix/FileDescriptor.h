#pragma once

#include <unistd.h>
#include <utility>

namespace Quenlor::Posix
{
/// An open file descriptor, closed at the end of its scope; negative when none is open.
class FileDescriptor
{
public:
    FileDescriptor() noexcept = default;
    explicit FileDescriptor(int descriptor) noexcept : m_descriptor{descriptor} {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor{std::exchange(other.m_descriptor, -1)} {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~FileDescriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    explicit operator bool() const noexcept { return m_descriptor >= 0; }
    int get() const noexcept { return m_descriptor; }

private:
    int m_descriptor = -1;
};
} // namespace Quenlor::Posix
