#include <fstream>
#include <map>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
std::string Trimmed(const std::string& text)
{
    constexpr const char* blanks = " \t\r";
    const std::size_t start = text.find_first_not_of(blanks);
    return start == std::string::npos ? "" : text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

/// What a programmer writes in half an hour.
class File
{
public:
    explicit File(const std::string& path)
    {
        std::ifstream file{path};
        std::string section;
        for (std::string text; std::getline(file, text);)
        {
            const std::string line = Trimmed(text);
            if (line.empty() || line.front() == ';' || line.front() == '#')
                continue;
            const std::size_t equals = line.find('=');
            if (line.front() == '[')
                section = line.substr(1, line.length() - 2);
            else if (equals != std::string::npos)
                m_values[section][Trimmed(line.substr(0, equals))] = Trimmed(line.substr(equals + 1));
        }
    }

    std::string Value(const std::string& section, const std::string& key) const
    {
        const auto keys = m_values.find(section);
        if (keys == m_values.end())
            return {};
        const auto value = keys->second.find(key);
        return value == keys->second.end() ? std::string{} : value->second;
    }

private:
    std::map<std::string, std::map<std::string, std::string>> m_values;
};

const bool added = AddReader<File>("ifstream and map");
} // namespace
} // namespace Benchmarks
