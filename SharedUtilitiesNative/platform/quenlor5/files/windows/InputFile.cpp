#include <Quenlor/InputFile.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <utility>

#include <Platform/Win32.h>
#include <Quenlor/QnFileName.h>

namespace Quenlor
{
InputFile::InputFile(const wchar_t* path)
{
    QnFileName name;
    name.SetName(path);
    // Others may write the file meanwhile, as they may when the C++ library has it open.
    if (::_wsopen_s(&m_descriptor, name.ToNativePath().c_str(), _O_RDONLY | _O_TEXT | _O_NOINHERIT | _O_SEQUENTIAL,
                    _SH_DENYNO, 0) != 0)
        m_descriptor = -1;
    else if (::GetFileType(reinterpret_cast<HANDLE>(::_get_osfhandle(m_descriptor))) != FILE_TYPE_DISK)
        ::_close(std::exchange(m_descriptor, -1)); // a pipe or a device, which could keep the reader waiting for ever
}

InputFile::~InputFile()
{
    if (IsOpen())
        ::_close(m_descriptor);
}

std::size_t InputFile::Length() const noexcept
{
    return static_cast<std::size_t>(std::max<std::int64_t>(::_filelengthi64(m_descriptor), 0));
}

std::size_t InputFile::Read(char* buffer, std::size_t size) noexcept
{
    const int count = ::_read(m_descriptor, buffer, static_cast<unsigned>(std::min<std::size_t>(size, INT_MAX)));
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}
} // namespace Quenlor
