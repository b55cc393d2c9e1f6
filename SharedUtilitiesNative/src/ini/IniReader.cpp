#include "IniReader.h"

#include <algorithm>
#include <map>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <Quenlor/QnFileName.h>
#include <Quenlor/QnStringUtilities.h>
#include <Quenlor/TextFile.h>

#include "core/NumberConversion.h"
#include "ini/IniText.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
struct KeyValue
{
    std::string_view key;
    std::string_view value;
};

/// The lines of one section in ascending order of their keys; those of one key in the order of the file.
// Sorted rather than hashed: no file makes it slow.
using SortedLines = std::vector<KeyValue>;

/// The last value of a key; null when there is none.
const std::string_view* FindValue(const SortedLines& lines, std::string_view key)
{
    const auto after = std::ranges::upper_bound(lines, key, {}, &KeyValue::key);
    return after != lines.begin() && after[-1].key == key ? &after[-1].value : nullptr;
}

/// Calls `visit(keyValue)` for each line with a key, in their order.
template<class Visitor>
void ForEachKeyValue(std::string_view lines, Visitor visit)
{
    for (auto line = Ini::TakeKeyValueLine(lines); !line.empty(); line = Ini::TakeKeyValueLine(lines))
        visit(KeyValue{Ini::KeyOf(line), Ini::ValueOf(line)});
}
} // namespace

/// The text of one load and where its sections are. The lines of a section are cut into keys and values when it is
/// first asked for.
class IniReader::Contents final
{
public:
    /// Finds all sections, or the first one of the name `wanted`.
    Contents(TextFile text, const std::string* wanted);

    /// In ascending order of their sections, each with a key; those of one section in the order of the file.
    const std::vector<Ini::Block>& Blocks() const noexcept { return m_blocks; }

    std::span<const Ini::Block> BlocksOf(std::string_view section) const
    {
        return {std::ranges::lower_bound(m_blocks, section, {}, &Ini::Block::section),
                std::ranges::upper_bound(m_blocks, section, {}, &Ini::Block::section)};
    }

    /// Null when there is no such section.
    const SortedLines* LinesOf(std::string_view section) const;

private:
    TextFile m_text;
    std::vector<Ini::Block> m_blocks;
    mutable std::map<std::string_view, SortedLines> m_lines; // of the sections that were asked for
    mutable const std::pair<const std::string_view, SortedLines>* m_last = nullptr;
};

IniReader::Contents::Contents(TextFile text, const std::string* wanted) : m_text{std::move(text)}
{
    bool isFound = false;
    const auto add = [&](const Ini::Block& block)
    {
        if (wanted && (isFound || block.section.empty() || block.section != *wanted))
            return;
        isFound = true;
        std::string_view lines = block.lines;
        if (!Ini::TakeKeyValueLine(lines).empty()) // a section without any key does not exist
            m_blocks.push_back(block);
    };
    Ini::ForEachBlock(m_text.View(), add);
    std::ranges::stable_sort(m_blocks, {}, &Ini::Block::section);
}

const SortedLines* IniReader::Contents::LinesOf(std::string_view section) const
{
    // Programs usually ask for all settings of one section, then for those of another.
    if (m_last && m_last->first == section)
        return &m_last->second;
    auto found = m_lines.find(section);
    if (found == m_lines.end())
    {
        const auto blocks = BlocksOf(section);
        if (blocks.empty())
            return nullptr;
        SortedLines lines;
        for (const Ini::Block& block : blocks)
            ForEachKeyValue(block.lines, [&](const KeyValue& line) { lines.push_back(line); });
        std::ranges::stable_sort(lines, {}, &KeyValue::key);
        found = m_lines.emplace(blocks.front().section, std::move(lines)).first;
    }
    m_last = &*found;
    return &m_last->second;
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
    TextFile text;
    if (!ReadTextFile(text, path))
        return QnFileName::DoesPathExist(path);
    const auto contents = std::make_shared<Contents>(std::move(text), section);
    if (contents->Blocks().empty())
        return true;
    // Earlier files stay: the key order outlives their values, and callers rely on it.
    if (!section)
        m_loadedFiles.push_back(contents);
    m_values = contents;
    return true;
}

const std::string_view* IniReader::Find(const std::string& section, const std::string& key) const
{
    const SortedLines* const lines = m_values ? m_values->LinesOf(section) : nullptr;
    return lines ? FindValue(*lines, key) : nullptr;
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
        for (const Ini::Block& block : m_values->Blocks())
        {
            if (names.empty() || names.back() != block.section)
                names.emplace_back(block.section);
        }
    }
    return static_cast<int>(names.size());
}

int IniReader::GetKeyValuePairListBySection(const std::string& section, std::vector<IniKeyValue>& pairs) const
{
    // `section` may be one of the texts that go. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const std::string name = section;
    pairs.clear();
    const SortedLines* const values = m_values ? m_values->LinesOf(name) : nullptr;
    if (!values)
        return 0;
    const auto add = [&](const KeyValue& line)
    {
        const std::string_view* const value = FindValue(*values, line.key);
        if (!value)
            throw std::out_of_range(NoSuchKey);
        pairs.push_back({std::string{line.key}, std::string{*value}});
    };
    for (const auto& file : m_loadedFiles)
    {
        for (const Ini::Block& block : file->BlocksOf(name))
            ForEachKeyValue(block.lines, add);
    }
    if (pairs.empty())
        throw std::out_of_range(NoSuchKey);
    return static_cast<int>(pairs.size());
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
