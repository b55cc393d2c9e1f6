#include "IniFiles.h"

#include <filesystem>
#include <fstream>

namespace Benchmarks
{
std::string Section(int number)
{
    return "Section" + std::to_string(number);
}

std::string Key(int number)
{
    return "DesignParameter" + std::to_string(number);
}

std::string Value(int section, int key)
{
    return "value " + std::to_string(section) + '.' + std::to_string(key);
}

std::string PathOf(const IniShape& shape)
{
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("fraxo-benchmark " + std::string{shape.name} + ".ini");
    if (!std::filesystem::exists(path))
    {
        std::ofstream file{path, std::ios::binary};
        for (int section = 0; section < shape.sections; ++section)
        {
            file << "# What the program keeps of this\r\n[" << Section(section) << "]\r\n";
            for (int key = 0; key < shape.keys; ++key)
                file << Key(key) << '=' << Value(section, key) << "\r\n";
            file << "\r\n";
        }
    }
    return path.string();
}
} // namespace Benchmarks
