// Any file, asked for any name: the answer fits the buffer, and is the same cut for a smaller one. The first two lines
// of an input are the section and the name, the rest is the file.

#include <Platform/Win32.h>

#include <string>

#include "Fuzz.h"

namespace
{
std::string Read(const std::string& section, const std::string& name, DWORD size, const std::string& path)
{
    std::string buffer(size + 1, '#');
    const DWORD length =
        ::GetPrivateProfileStringA(section.c_str(), name.c_str(), "default", buffer.data(), size, path.c_str());
    Check(length < size && buffer[length] == '\0');
    Check(buffer.find_first_not_of('#', length + 1) == std::string::npos);
    return buffer.substr(0, length);
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view input = TextOf(data, size);
    const std::string section = TakeLine(input), name = TakeLine(input), path = FileOf(input);
    const std::string value = Read(section, name, static_cast<DWORD>(size) + 16, path);
    Check(value == "default" || input.find(value) != std::string_view::npos);
    Check(Read(section, name, 4, path) == value.substr(0, 3));
    return 0;
}
