#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include <Platform/Win32.h>
#include <gtest/gtest.h>

#include "support/Files.h"

namespace Quenlor::StandIn::Registry
{
void LocateHives(); // where the environment of now says; programs decide once
}

/// A registry of its own for each test: QUENLOR_REGISTRY_DIR names a folder that does not exist yet.
class ScratchRegistry : public ::testing::Test
{
protected:
    ScratchRegistry()
    {
        std::string name = (std::filesystem::temp_directory_path() / "registry-XXXXXX").string();
        m_scratch = ::mkdtemp(name.data());
        ::setenv("QUENLOR_REGISTRY_DIR", (m_scratch / "hives").c_str(), 1);
        Quenlor::StandIn::Registry::LocateHives();
    }

    ~ScratchRegistry() override { std::filesystem::remove_all(m_scratch); }

    std::filesystem::path Scratch() const { return m_scratch; }
    std::filesystem::path UserHive() const { return m_scratch / "hives/HKEY_CURRENT_USER.reg"; }
    std::filesystem::path MachineHive() const { return m_scratch / "hives/HKEY_LOCAL_MACHINE.reg"; }

    static std::filesystem::path With(std::filesystem::path file, const char* suffix) { return file += suffix; }

    static LSTATUS SetNumber(HKEY root, const char* subKey, const char* name, DWORD number)
    {
        HKEY key = nullptr;
        LSTATUS status = ::RegCreateKeyExA(root, subKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
        if (status == ERROR_SUCCESS)
            status = ::RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
        ::RegCloseKey(key);
        return status;
    }

    static LSTATUS GetNumber(HKEY key, const char* name, DWORD& number)
    {
        DWORD size = sizeof number;
        return ::RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size);
    }

    static LSTATUS GetNumber(HKEY root, const char* subKey, const char* name, DWORD& number)
    {
        HKEY key = nullptr;
        LSTATUS status = ::RegOpenKeyExA(root, subKey, 0, KEY_READ, &key);
        if (status == ERROR_SUCCESS)
            status = GetNumber(key, name, number);
        ::RegCloseKey(key);
        return status;
    }

private:
    std::filesystem::path m_scratch;
};
