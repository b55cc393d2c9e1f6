#include <Quenlor/TextFile.h>

#include <sys/stat.h>
#include <unistd.h>

#include <Quenlor/QnStringUtilities.h>

#include "files/ReadToEnd.h"
#include "posix/NativePath.h"
#include "posix/RetryInterrupted.h"

bool Quenlor::ReadTextFile(TextFile& text, const wchar_t* path)
{
    Utf8String utf8;
    QnStringUtilities::WCharToUtf8(utf8, path);
    const Posix::FileDescriptor file = Posix::OpenForReading({utf8.data(), utf8.length()});
    if (!file)
        return false;
    struct stat status;
    if (::fstat(file.get(), &status) != 0 || status.st_size > LargestText)
        return false;
    const auto read = [&](char* place, std::size_t count)
    { return Posix::RetryInterrupted([&] { return ::read(file.get(), place, count); }); };
    text = ReadToEnd(static_cast<std::size_t>(status.st_size), read);
    return true;
}
