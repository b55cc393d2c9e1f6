// Any file gives the same answers as a plain line-by-line reader.

#include <IniReader.h>

#include <map>
#include <sstream>
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

/// What a file holds, by the rules as plainly as they can be written down: slow, and easy to check.
struct PlainFile
{
    /// All sections, or only the first one of the name `wanted`.
    PlainFile(std::string_view text, const std::string* wanted)
    {
        std::istringstream lines{std::string{text}};
        std::string section;
        bool isInside = !wanted;
        for (std::string line; std::getline(lines, line);)
        {
            line = Trim(line);
            if (line == "" || line[0] == ';' || line[0] == '#')
                continue;
            const bool isBracketed = line.length() > 2 && (line[0] == '[' || line.back() == ']');
            const std::string name = isBracketed ? Trim(line.substr(1, line.length() - 2)) : "";
            const std::size_t equals = line.find('=');
            if (name != "")
            {
                if (wanted && isInside)
                    break;
                section = name;
                isInside = !wanted || name == *wanted;
            }
            else if (isInside && equals != line.npos)
            {
                keys[section].push_back(Trim(line.substr(0, equals)));
                values[section][keys[section].back()] = Trim(line.substr(equals + 1));
            }
        }
    }

    std::map<std::string, std::map<std::string, std::string>> values;
    std::map<std::string, std::vector<std::string>> keys; // in the order of the file
};

void Compare(const IniReader& reader, const PlainFile& plain)
{
    std::vector<std::string> sections, expected;
    for (const auto& [section, values] : plain.values)
    {
        expected.push_back(section);
        for (const auto& [key, value] : values)
            Check(reader.GetStringValue(section, key, value + "?") == value);
    }
    reader.GetSectionList(sections);
    Check(sections == expected);
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = TextOf(data, size);
    const std::string path = FileOf(text);
    const PlainFile plain{text, nullptr};
    IniReader reader;
    Check(reader.LoadFile(path));
    Compare(reader, plain);
    for (const auto& [section, keys] : plain.keys)
    {
        std::vector<IniKeyValue> pairs;
        reader.GetKeyValuePairListBySection(section, pairs);
        Check(pairs.size() == keys.size());
        for (std::size_t i = 0; i < keys.size(); ++i)
            Check(pairs[i].Key == keys[i] && pairs[i].Value == plain.values.at(section).at(keys[i]));
    }

    std::size_t most = 8;
    for (auto section = plain.keys.begin(); section != plain.keys.end() && most > 0; ++section, --most)
    {
        Check(reader.LoadSection(path, section->first));
        Compare(reader, {text, &section->first});
    }
    return 0;
}
