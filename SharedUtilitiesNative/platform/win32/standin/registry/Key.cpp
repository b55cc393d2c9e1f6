#include "registry/Key.h"

#include <utility>

#include "posix/CaseFolding.h"
#include "registry/RegistryPath.h"

namespace Quenlor::StandIn::Registry
{
using Posix::FoldCase;

const Key* Key::Find(std::string_view path) const
{
    const std::string folded = FoldCase(path); // all levels at once: folding neither makes nor removes a backslash
    std::string_view rest = folded;
    const Key* key = this;
    for (std::string_view level; NextLevel(rest, level);)
    {
        const auto found = key->m_subKeys.find(level);
        if (found == key->m_subKeys.end())
            return nullptr;
        key = &found->second;
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
        const auto [position, isNew] = key->m_subKeys.try_emplace(FoldCase(level));
        key = &position->second;
        if (isNew)
            key->m_name = level;
    }
    return *key;
}

bool Key::Delete(std::string_view path)
{
    const std::size_t nameEnd = path.find_last_not_of('\\') + 1;
    const std::size_t nameStart = path.substr(0, nameEnd).rfind('\\') + 1;
    Key* const parent = Find(path.substr(0, nameStart));
    return parent && parent->m_subKeys.erase(FoldCase(path.substr(nameStart, nameEnd - nameStart))) != 0;
}

void Key::Clear() noexcept
{
    m_subKeys.clear();
    m_values.clear();
}

const Value* Key::FindValue(std::string_view name) const
{
    const auto found = m_values.find(FoldCase(name));
    return found == m_values.end() ? nullptr : &found->second;
}

void Key::SetValue(std::string_view name, DWORD type, std::string_view data)
{
    Value& value = m_values.try_emplace(FoldCase(name), Value{std::string{name}, type, {}}).first->second;
    value.type = type;
    value.data = data;
}

bool Key::DeleteValue(std::string_view name)
{
    return m_values.erase(FoldCase(name)) != 0;
}
} // namespace Quenlor::StandIn::Registry
