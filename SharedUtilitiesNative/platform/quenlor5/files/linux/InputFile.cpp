#include <Quenlor/InputFile.h>

#include <sys/stat.h>
#include <unistd.h>

#include <Quenlor/QnStringUtilities.h>

#include "posix/NativePath.h"
#include "posix/RetryInterrupted.h"

namespace Quenlor
{
InputFile::InputFile(const wchar_t* path)
{
    Utf8String utf8;
    QnStringUtilities::WCharToUtf8(utf8, path);
    m_descriptor = Posix::OpenForReading({utf8.data(), utf8.length()}).Release();
}

InputFile::~InputFile()
{
    if (IsOpen())
        ::close(m_descriptor);
}

std::size_t InputFile::Length() const noexcept
{
    struct stat status;
    return ::fstat(m_descriptor, &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

std::size_t InputFile::Read(char* buffer, std::size_t size) noexcept
{
    const ssize_t count = Posix::RetryInterrupted([&] { return ::read(m_descriptor, buffer, size); });
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}
} // namespace Quenlor
