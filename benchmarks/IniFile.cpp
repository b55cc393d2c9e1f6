#include "IniFile.h"

#include <fstream>

namespace Benchmarks
{
std::vector<IniReaderKind>& IniReaderKinds()
{
    static std::vector<IniReaderKind> kinds;
    return kinds;
}

std::string IniShape::Section(int number)
{
    return "Section" + std::to_string(number);
}

std::string IniShape::Key(int number)
{
    return "DesignParameter" + std::to_string(number);
}

std::string IniShape::Value(int section, int key)
{
    return "value " + std::to_string(section) + '.' + std::to_string(key);
}

std::string Generate(const std::filesystem::path& folder, const IniShape& shape, LineEnd lineEnd)
{
    const char* const end = lineEnd == LineEnd::Lf ? "\n" : "\r\n";
    const std::filesystem::path path = folder / (shape.name + (lineEnd == LineEnd::Lf ? ".ini" : " CRLF.ini"));
    if (std::filesystem::exists(path))
        return path;
    std::ofstream file{path, std::ios::binary};
    for (int section = 0; section < shape.sections; ++section)
    {
        file << "# What the program keeps of this" << end << '[' << IniShape::Section(section) << ']' << end;
        for (int key = 0; key < shape.keys; ++key)
            file << IniShape::Key(key) << '=' << IniShape::Value(section, key) << end;
        file << end;
    }
    return path;
}
} // namespace Benchmarks
