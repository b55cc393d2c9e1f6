#pragma once

#include <string_view>

#include <Platform/Win32.h>

#include "registry/Key.h"
#include "registry/RegistryFileReader.h"

namespace Quenlor::StandIn::Registry
{
/// Puts what a registry file says of one root into a tree.
class TreeLoader final : public RegistryFileHandler
{
public:
    TreeLoader(HKEY root, Key& tree) noexcept : m_root{root}, m_tree{tree} {}

    bool BeginKey(HKEY root, std::string_view path) override
    {
        if (root != m_root)
            return false;
        m_key = &m_tree.Create(path);
        return true;
    }

    bool DeleteKey(HKEY root, std::string_view path) override
    {
        if (root == m_root)
            m_tree.Delete(path);
        return root == m_root;
    }

    void SetValue(std::string_view name, DWORD type, std::string_view data) override
    {
        m_key->SetValue(name, type, data);
    }
    void DeleteValue(std::string_view name) override { m_key->DeleteValue(name); }

private:
    HKEY m_root;
    Key& m_tree;
    Key* m_key = nullptr;
};
} // namespace Quenlor::StandIn::Registry
