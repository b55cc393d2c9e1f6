#include <Quenlor/TextFile.h>

#include <climits>
#include <fcntl.h>
#include <io.h>
#include <share.h>

#include <Platform/Win32.h>
#include <Quenlor/QnFileName.h>

#include "files/ReadToEnd.h"

namespace
{
/// Closed at the end of its scope.
struct OpenedFile
{
    OpenedFile() = default;
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;
    ~OpenedFile()
    {
        if (descriptor >= 0)
            ::_close(descriptor);
    }

    int descriptor = -1;
};
} // namespace

bool Quenlor::ReadTextFile(TextFile& text, const wchar_t* path)
{
    OpenedFile file;
    // Others may write the file meanwhile, as they may when the C++ library has it open.
    if (::_wsopen_s(&file.descriptor, QnFileName{path}.ToNativePath().c_str(),
                    _O_RDONLY | _O_TEXT | _O_NOINHERIT | _O_SEQUENTIAL, _SH_DENYNO, 0) != 0)
        return false;
    // A pipe or a device could keep the reader waiting for ever.
    const bool isFile = ::GetFileType(reinterpret_cast<HANDLE>(::_get_osfhandle(file.descriptor))) == FILE_TYPE_DISK;
    const auto read = [&](char* place, std::size_t count)
    { return ::_read(file.descriptor, place, static_cast<unsigned>(std::min<std::size_t>(count, INT_MAX))); };
    return ReadToEnd(text, isFile ? ::_filelengthi64(file.descriptor) : -1, read);
}
