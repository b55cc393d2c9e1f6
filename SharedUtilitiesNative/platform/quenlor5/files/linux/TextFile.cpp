#include <Quenlor/TextFile.h>

#include <sys/stat.h>
#include <unistd.h>

#include <Quenlor/QnFileName.h>

#include "files/ReadToEnd.h"
#include "posix/NativePath.h"
#include "posix/RetryInterrupted.h"

bool Quenlor::ReadTextFile(TextFile& text, const wchar_t* path)
{
    const Posix::FileDescriptor file = Posix::OpenForReading(QnFileName{path}.GetNameUtf8());
    struct stat status;
    if (!file || ::fstat(file.get(), &status) != 0)
        return false;
    const auto read = [&](char* place, std::size_t count)
    { return Posix::RetryInterrupted([&] { return ::read(file.get(), place, count); }); };
    return ReadToEnd(text, status.st_size, read);
}
