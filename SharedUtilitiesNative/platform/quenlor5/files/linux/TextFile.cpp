#include <Quenlor/TextFile.h>

#include <unistd.h>

#include <Quenlor/QnFileName.h>

#include "files/ReadToEnd.h"
#include "posix/NativePath.h"
#include "posix/RetryInterrupted.h"

bool Quenlor::ReadTextFile(TextFile& text, const wchar_t* path)
{
    const Posix::RegularFile file = Posix::OpenForReading(QnFileName{path}.GetNameUtf8());
    if (!file)
        return false;
    const auto read = [&](char* place, std::size_t count)
    { return Posix::RetryInterrupted([&] { return ::read(file.get(), place, count); }); };
    return ReadToEnd(text, file.status.st_size, read);
}
