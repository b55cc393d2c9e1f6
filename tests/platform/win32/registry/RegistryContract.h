#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <Platform/Win32.h>
#include <gtest/gtest.h>

#include "registry/RegistryKey.h"
#include "support/KnownDifferences.h"
#include "support/ScratchMachine.h"

// Short forms of the registry functions for their own tests, which say what Windows answers: they hold for Windows
// itself and for whatever stands in for it.

using Key = Quenlor::Fraxo::SharedUtilities::Native::RegistryKey; // closes itself

inline LSTATUS Open(HKEY parent, const char* subKey, REGSAM access, Key& result)
{
    HKEY key = nullptr;
    const LSTATUS status = ::RegOpenKeyExA(parent, subKey, 0, access, &key);
    result.reset(key);
    return status;
}

inline LSTATUS Create(HKEY parent, const char* subKey, REGSAM access, Key& result, DWORD* disposition = nullptr)
{
    HKEY key = nullptr;
    const LSTATUS status = ::RegCreateKeyExA(parent, subKey, 0, nullptr, 0, access, nullptr, &key, disposition);
    result.reset(key);
    return status;
}

inline LSTATUS OpenStatus(HKEY parent, const char* subKey)
{
    Key key;
    return Open(parent, subKey, KEY_READ, key);
}

inline LSTATUS CreateStatus(HKEY parent, const char* subKey)
{
    Key key;
    return Create(parent, subKey, KEY_ALL_ACCESS, key);
}

inline LSTATUS Set(HKEY key, const char* name, DWORD type, const char* bytes, std::size_t size)
{
    return ::RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(bytes), static_cast<DWORD>(size));
}

inline LSTATUS SetText(HKEY key, const char* name, const char* text)
{
    return Set(key, name, REG_SZ, text, std::string_view{text}.length() + 1);
}

/// The text of a value, or why there is none.
inline std::string Text(HKEY key, const char* name)
{
    char buffer[64] = "";
    DWORD size = sizeof buffer;
    const LSTATUS status = ::RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &size);
    return status == ERROR_SUCCESS ? buffer : "error " + std::to_string(status);
}

inline const auto EnumKey = ::RegEnumKeyExA;
inline const auto EnumValue = ::RegEnumValueA;

/// The names that one of the two functions above lists.
inline std::vector<std::string> Names(auto list, HKEY key)
{
    std::vector<std::string> names;
    std::string name(16384, '\0');
    DWORD size = 16384;
    while (list(key, static_cast<DWORD>(names.size()), name.data(), &size, nullptr, nullptr, nullptr, nullptr) == 0)
    {
        names.push_back(name.substr(0, size));
        size = 16384;
    }
    return names;
}

/// A test of the system's own functions, left out where the system is known to answer differently from Windows.
class RegistryContractTest : public ::testing::Test
{
protected:
    RegistryContractTest() = default;
    explicit RegistryContractTest(ScratchMachine::ClassesRoot classes) : m_machine{classes} {}

    void SetUp() override
    {
        if (const char* const answer = KnownDifference())
            GTEST_SKIP() << answer;
    }

    ScratchMachine m_machine;
};
