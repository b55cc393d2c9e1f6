#include "registry/RegistryTree.h"

#include <algorithm>
#include <utility>

#include "posix/CaseFolding.h"
#include "registry/RegistryPath.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
/// Posix::FoldCase, quicker for the names that are common: no branch depends on a letter.
std::string Fold(std::string_view name)
{
    std::string folded{name};
    unsigned char all = 0;
    for (char& character : folded)
    {
        all |= static_cast<unsigned char>(character);
        const bool isLower = static_cast<unsigned char>(character - 'a') <= 'z' - 'a';
        character = static_cast<char>(character - (isLower ? 'a' - 'A' : 0));
    }
    return all < 0x80 ? folded : Posix::FoldCase(name);
}
} // namespace

Key::Key(std::string_view name, std::string foldedName) : m_name{name}, m_foldedName{std::move(foldedName)} {}

std::size_t Key::PositionOf(std::string_view foldedName) const noexcept
{
    const auto found =
        std::lower_bound(m_subKeys.begin(), m_subKeys.end(), foldedName,
                         [](const auto& key, std::string_view name) { return key->m_foldedName < name; });
    return static_cast<std::size_t>(found - m_subKeys.begin());
}

bool Key::IsAt(std::size_t position, std::string_view foldedName) const noexcept
{
    return position < m_subKeys.size() && m_subKeys[position]->m_foldedName == foldedName;
}

const Key* Key::Find(std::string_view path) const
{
    const std::string folded = Fold(path); // once for all levels: folding neither makes nor removes a backslash
    std::string_view rest = folded;
    const Key* key = this;
    for (std::string_view level; NextLevel(rest, level);)
    {
        const std::size_t position = key->PositionOf(level);
        if (!key->IsAt(position, level))
            return nullptr;
        key = key->m_subKeys[position].get();
    }
    return key;
}

Key* Key::Find(std::string_view path)
{
    return const_cast<Key*>(std::as_const(*this).Find(path));
}

Key& Key::Create(std::string_view path)
{
    Key* key = this;
    for (std::string_view level; NextLevel(path, level);)
    {
        std::string folded = Fold(level);
        const std::size_t position = key->PositionOf(folded);
        if (!key->IsAt(position, folded))
            key->m_subKeys.insert(key->m_subKeys.begin() + static_cast<std::ptrdiff_t>(position),
                                  std::make_unique<Key>(level, std::move(folded)));
        key = key->m_subKeys[position].get();
    }
    return *key;
}

bool Key::Delete(std::string_view path)
{
    const std::string folded = Fold(path);
    std::string_view rest = folded;
    Key* parent = nullptr;
    Key* key = this;
    std::size_t position = 0;
    for (std::string_view level; NextLevel(rest, level);)
    {
        position = key->PositionOf(level);
        if (!key->IsAt(position, level))
            return false;
        parent = std::exchange(key, key->m_subKeys[position].get());
    }
    if (!parent)
        return false;
    parent->m_subKeys.erase(parent->m_subKeys.begin() + static_cast<std::ptrdiff_t>(position));
    return true;
}

void Key::Clear() noexcept
{
    m_subKeys.clear();
    m_valueIndex.clear();
    m_values.clear();
}

const Value* Key::FindValue(std::string_view name) const
{
    const auto found = m_valueIndex.find(Fold(name));
    return found == m_valueIndex.end() ? nullptr : found->second;
}

void Key::SetValue(std::string_view name, DWORD type, std::string_view data)
{
    std::string folded = Fold(name);
    const auto found = m_valueIndex.find(folded);
    if (found != m_valueIndex.end())
    {
        found->second->type = type;
        found->second->data = data;
        return;
    }
    m_values.push_back(
        std::make_unique<Value>(Value{std::string{name}, type, std::string{data}, std::move(folded), m_nextOrder++}));
    m_valueIndex.emplace(m_values.back()->foldedName, m_values.back().get());
}

bool Key::DeleteValue(std::string_view name)
{
    const auto found = m_valueIndex.find(Fold(name));
    if (found == m_valueIndex.end())
        return false;
    const std::uint64_t order = found->second->order;
    m_valueIndex.erase(found);
    m_values.erase(std::lower_bound(m_values.begin(), m_values.end(), order,
                                    [](const auto& value, std::uint64_t wanted) { return value->order < wanted; }));
    return true;
}
} // namespace Quenlor::StandIn::Registry
