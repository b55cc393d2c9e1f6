// Any file gives the same answers as a plain line-by-line reader.

#include <IniReader.h>

#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "Fuzz.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace
{
std::string Trim(const std::string& text)
{
    const char* const whiteSpace = " \n\r\t\f\v";
    const std::size_t first = text.find_first_not_of(whiteSpace);
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

/// The rules of INI files as plainly as they can be written down: slow, and easy to check.
struct PlainReader
{
    /// Loads all sections, or only the first one of the name `wanted`.
    void Load(const std::string& path, const std::string* wanted)
    {
        values.clear();
        std::ifstream file{path};
        std::string section;
        bool isInside = !wanted;
        for (std::string text; std::getline(file, text);)
        {
            const std::string line = Trim(text);
            const bool isIgnored = line == "" || line[0] == ';' || line[0] == '#';
            const bool isBracketed = line.length() > 2 && (line[0] == '[' || line.back() == ']');
            const std::string name = isBracketed ? Trim(line.substr(1, line.length() - 2)) : "";
            const std::size_t equals = line.find('=');
            if (!isIgnored && name != "")
            {
                if (wanted && isInside)
                    break;
                section = name;
                isInside = !wanted || name == *wanted;
            }
            else if (!isIgnored && isInside && equals != line.npos)
            {
                const std::string key = Trim(line.substr(0, equals));
                values[section][key] = Trim(line.substr(equals + 1));
                if (!wanted)
                    keyOrder[section].push_back(key);
            }
        }
    }

    std::map<std::string, std::map<std::string, std::string>> values;
    std::map<std::string, std::vector<std::string>> keyOrder; // of all files so far
};

/// Lists a section, and fails where one of its keys in the order of all files has no value.
void CheckPairs(const IniReader& reader, PlainReader& plain, const std::string& section)
{
    std::vector<IniKeyValue> pairs;
    bool isListed = true;
    try
    {
        reader.GetKeyValuePairListBySection(section, pairs);
    }
    catch (const std::out_of_range&)
    {
        isListed = false;
    }
    auto& values = plain.values[section];
    const auto& order = plain.keyOrder[section];
    std::size_t count = 0;
    while (count < order.size() && values.contains(order[count]))
        ++count;
    Check(isListed == (count == order.size() && count != 0) && pairs.size() == count);
    for (std::size_t i = 0; i < count; ++i)
        Check(pairs[i].Key == order[i] && pairs[i].Value == values[order[i]]);
}

void Compare(const IniReader& reader, PlainReader& plain)
{
    std::vector<std::string> sections;
    std::vector<std::string> expected;
    for (const auto& [section, values] : plain.values)
    {
        expected.push_back(section);
        for (const auto& [key, value] : values)
            Check(reader.GetStringValue(section, key, value + "?") == value);
        CheckPairs(reader, plain, section);
    }
    reader.GetSectionList(sections);
    Check(sections == expected);
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = FileOf(TextOf(data, size));
    IniReader reader;
    PlainReader plain;
    plain.Load(path, nullptr);
    Check(reader.LoadFile(path));
    Compare(reader, plain);

    const auto sections = plain.values; // a copy: loading a section replaces them
    std::size_t most = 8;
    for (auto section = sections.begin(); section != sections.end() && most != 0; ++section, --most)
    {
        plain.Load(path, &section->first);
        Check(reader.LoadSection(path, section->first));
        Compare(reader, plain);
    }
    return 0;
}
