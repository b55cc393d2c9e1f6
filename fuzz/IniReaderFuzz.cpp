// Any file gives the same answers as a plain line-by-line reader.

#include <stdexcept>
#include <string>
#include <vector>

#include "Fuzz.h"
#include "IniReader.h"
#include "ReferenceIniReader.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace
{
/// The pairs of a section, the failure of a checked look-up included.
template<typename Reader>
std::vector<std::string> Pairs(const Reader& reader, const std::string& section)
{
    std::vector<IniKeyValue> pairs;
    std::vector<std::string> texts;
    try
    {
        reader.GetKeyValuePairListBySection(section, pairs);
    }
    catch (const std::out_of_range&)
    {
        return {"not in the key order"};
    }
    for (const IniKeyValue& pair : pairs)
        texts.insert(texts.end(), {pair.Key, pair.Value});
    return texts;
}

void Compare(const IniReader& reader, const ReferenceIniReader& reference)
{
    std::vector<std::string> sections;
    std::vector<std::string> expected;
    for (const auto& [section, values] : reference.AllValues())
    {
        expected.push_back(section);
        for (const auto& [key, value] : values)
            Check(reader.GetStringValue(section, key, value + "?") == value);
        Check(Pairs(reader, section) == Pairs(reference, section));
    }
    reader.GetSectionList(sections);
    Check(sections == expected);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = FileOf(TextOf(data, size));
    IniReader reader;
    ReferenceIniReader reference;
    Check(reader.LoadFile(path) && reference.LoadFile(path));
    Compare(reader, reference);

    const auto sections = reference.AllValues(); // a copy: loading a section replaces them
    std::size_t most = 8;
    for (const auto& section : sections)
    {
        Check(reader.LoadSection(path, section.first) == reference.LoadSection(path, section.first));
        Compare(reader, reference);
        if (--most == 0)
            break;
    }
    return 0;
}
