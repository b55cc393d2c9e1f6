#include "IniReader.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <Quenlor/InputFile.h>
#include <Quenlor/QnFileName.h>
#include <Quenlor/QnStringUtilities.h>

#include "core/NumberConversion.h"
#include "ini/HeaderFinder.h"
#include "ini/LineReader.h"
#include "ini/NameTable.h"
#include "ini/Section.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The text of one load and where in it the lines of each section are. Sections are united when one is first asked for,
/// and only then are their lines cut into keys and values.
class IniReader::Contents final
{
public:
    /// Reads all sections, or the first one of the name `wanted`.
    void Read(InputFile& file, const std::string* wanted);

    bool IsEmpty() const noexcept { return m_parts.empty(); }
    const Ini::Section* Find(std::string_view section) const;
    std::vector<std::string_view> SortedNames() const;

private:
    using Sections = Ini::NameTable<Ini::Section>;

    /// What stands between two headers.
    struct Part
    {
        std::string_view section;
        std::string_view lines;
    };

    void Add(std::string_view section, std::string_view lines);
    Sections& United() const;

    Ini::LineReader m_text;
    std::vector<Part> m_parts;   // with keys, in the order of the file
    mutable Sections m_sections; // not made until somebody asks: filling it took a quarter of loading

    // The last answer of Find: programs ask for the settings of one section, then for those of another.
    mutable std::string m_lastName;
    mutable const Ini::Section* m_lastSection = nullptr;
};

void IniReader::Contents::Read(InputFile& file, const std::string* wanted)
{
    std::string_view section;
    bool isWanted = !wanted;
    for (auto lines = m_text.Read(file); !lines.empty(); lines = m_text.Read(file))
    {
        Ini::HeaderFinder header{lines};
        while (header.Next())
        {
            if (isWanted)
                Add(section, header.LinesBefore());
            if (isWanted && wanted)
                return;
            section = header.Name();
            isWanted = !wanted || section == *wanted;
        }
        if (isWanted)
            Add(section, header.LinesBefore());
        else
            m_text.Release();
    }
}

void IniReader::Contents::Add(std::string_view section, std::string_view lines)
{
    std::string_view rest = lines;
    if (!Ini::TakeKeyValueLine(rest).empty()) // a section without any key does not exist
        m_parts.push_back({section, lines});
}

IniReader::Contents::Sections& IniReader::Contents::United() const
{
    if (!m_sections.IsMade())
    {
        Sections sections{m_parts.size()};
        for (const Part& part : m_parts)
            sections[part.section].Append(part.lines);
        m_sections = std::move(sections); // all of them or, when memory runs out on the way, none
    }
    return m_sections;
}

const Ini::Section* IniReader::Contents::Find(std::string_view section) const
{
    if (!m_lastSection || m_lastName != section)
    {
        const Ini::Section* const found = United().Find(section);
        m_lastName = section; // may throw, and the two belong together
        m_lastSection = found;
    }
    return m_lastSection;
}

std::vector<std::string_view> IniReader::Contents::SortedNames() const
{
    std::vector<std::string_view> names;
    United().ForEachName([&](std::string_view name) { names.push_back(name); });
    std::ranges::sort(names);
    return names;
}

namespace
{
constexpr const char* NoSuchKey = "invalid map<K, T> key";

WString Widen(const std::string& path)
{
    WString wide;
    QnStringUtilities::Utf8ToWChar(wide, path.c_str());
    return wide;
}
} // namespace

IniReader::~IniReader() = default;

bool IniReader::LoadFile(const std::wstring& path)
{
    return Load(path.c_str(), nullptr);
}

bool IniReader::LoadFile(const std::string& path)
{
    return Load(Widen(path).c_str(), nullptr);
}

bool IniReader::LoadSection(const std::wstring& path, const std::string& section)
{
    return Load(path.c_str(), &section);
}

bool IniReader::LoadSection(const std::string& path, const std::string& section)
{
    return Load(Widen(path).c_str(), &section);
}

bool IniReader::Load(const wchar_t* path, const std::string* section)
{
    m_values.reset();
    InputFile file{path};
    if (!file.IsOpen())
        return QnFileName::DoesPathExist(path);
    const auto contents = std::make_shared<Contents>();
    contents->Read(file, section);
    if (contents->IsEmpty())
        return true;
    // Earlier files stay: the key order outlives their values, and callers rely on it.
    if (!section)
        m_loadedFiles.push_back(contents);
    m_values = contents;
    return true;
}

const std::string_view* IniReader::Find(const std::string& section, const std::string& key) const
{
    const Ini::Section* const found = m_values ? m_values->Find(section) : nullptr;
    return found ? found->Find(key) : nullptr;
}

std::string IniReader::GetStringValue(const std::string& section, const std::string& key,
                                      const std::string& whenMissing) const
{
    const std::string_view* const value = Find(section, key);
    return value ? std::string{*value} : whenMissing;
}

int IniReader::GetIntegerValue(const std::string& section, const std::string& key, const int& whenMissing) const
{
    const std::string_view* const value = Find(section, key);
    return value ? ToInt(std::string{*value}) : whenMissing;
}

bool IniReader::GetBoolValue(const std::string& section, const std::string& key, const bool& whenMissing) const
{
    const std::string_view* const value = Find(section, key);
    return value ? ToInt(std::string{*value}) != 0 : whenMissing;
}

float IniReader::GetFloatValue(const std::string& section, const std::string& key, const float& whenMissing) const
{
    const std::string_view* const value = Find(section, key);
    return value ? ToFloat(std::string{*value}) : whenMissing;
}

int IniReader::GetSectionList(std::vector<std::string>& names) const
{
    names.clear();
    if (m_values)
    {
        const auto sorted = m_values->SortedNames();
        names.assign(sorted.begin(), sorted.end());
    }
    return static_cast<int>(names.size());
}

int IniReader::GetKeyValuePairListBySection(const std::string& section, std::vector<IniKeyValue>& pairs) const
{
    const Ini::Section* const values = m_values ? m_values->Find(section) : nullptr;
    std::vector<const Ini::Section*> order;
    for (const auto& file : m_loadedFiles)
    {
        if (const Ini::Section* const keys = file->Find(section))
            order.push_back(keys);
    }
    pairs.clear(); // not earlier: `section` may be one of its texts
    if (!values)
        return 0;
    if (order.empty())
        throw std::out_of_range(NoSuchKey);
    for (const Ini::Section* const keys : order)
    {
        keys->ForEachKeyValueLine(
            [&](std::string_view line)
            {
            const std::string_view key = Ini::KeyOf(line);
            const std::string_view* const value = values->Find(key);
            if (!value)
                throw std::out_of_range(NoSuchKey);
            pairs.push_back({std::string{key}, std::string{*value}});
        });
    }
    return static_cast<int>(pairs.size());
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
