#include "support/ScratchMachine.h"

#include <cstring>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

ScratchMachine::ScratchMachine(ClassesRoot classes) : m_classes{classes}
{
    static int count = 0;
    const std::string number = std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++count);
    m_root = std::filesystem::temp_directory_path() / ("Scratch Machine " + number);
    std::filesystem::remove_all(m_root); // of a crashed process with the same number
    std::filesystem::create_directory(m_root);

    std::vector<std::string> variables; // which change while they are removed
    for (char** variable = Environment(); variable && *variable; ++variable)
        variables.emplace_back(*variable, std::strcspn(*variable, "="));
    for (const std::string& variable : variables)
    {
        for (const char* const prefix : {"FRAXO_PRO_", "FPRO_FEATURE_", "QUENLOR_"})
        {
            if (variable.starts_with(prefix))
                SetEnvironment(variable, {});
        }
    }
    GiveBackRegistry(); // of such a process
    TakeRegistry();
    if (m_classes == ClassesRoot::Merged)
        return;
    create_directory(m_root / "ProgramData");
    create_directory(m_root / "LocalAppData");
    MoveShellFolder(ShellFolder::ProgramData, (m_root / "ProgramData").string());
    MoveShellFolder(ShellFolder::LocalAppData, (m_root / "LocalAppData").string());
}

ScratchMachine::~ScratchMachine()
{
    GiveBackRegistry();
    std::error_code ignored; // what a failed test left open must not hide why it failed
    std::filesystem::remove_all(m_root, ignored);
}

std::string ScratchMachine::Folder(std::string_view name) const
{
    const std::filesystem::path folder = m_root / name;
    std::filesystem::create_directories(folder);
    const std::u8string text = folder.u8string();
    return std::string{text.begin(), text.end()} + '\\';
}

std::string ScratchMachine::ProductFolder(ShellFolder folder) const
{
    return Folder(folder == ShellFolder::ProgramData ? "ProgramData" : "LocalAppData") +
           R"(Quenlor\Engineering\FRAXO.Pro VANTIRE Edition\)";
}

void ScratchMachine::WriteText(HKEY root, const std::string& subKey, const char* name, std::string_view text) const
{
    WriteData(root, subKey, name, REG_SZ, std::string{text} + '\0');
}

void ScratchMachine::WriteNumber(HKEY root, const std::string& subKey, const char* name, DWORD number) const
{
    WriteData(root, subKey, name, REG_DWORD, {reinterpret_cast<const char*>(&number), sizeof number});
}

void ScratchMachine::WriteData(HKEY root, const std::string& subKey, const char* name, DWORD type,
                               std::string_view bytes) const
{
    ASSERT_FALSE(root == HKEY_CLASSES_ROOT && m_classes == ClassesRoot::NotUsed);
    HKEY key = nullptr;
    EXPECT_EQ(::RegCreateKeyExA(root, subKey.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr), 0);
    // The system also stores a NUL that follows the text in memory: here something else follows.
    const std::string guarded = std::string{bytes} + '.';
    EXPECT_EQ(::RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(guarded.data()),
                               static_cast<DWORD>(bytes.length())),
              ERROR_SUCCESS);
    ::RegCloseKey(key);
}

bool ScratchMachine::HasKey(HKEY root, const std::string& subKey) const
{
    HKEY key = nullptr;
    ::RegOpenKeyExA(root, subKey.c_str(), 0, KEY_READ, &key);
    return ::RegCloseKey(key) == ERROR_SUCCESS;
}

std::optional<StoredValue> ScratchMachine::ReadData(HKEY root, const std::string& subKey, const char* name) const
{
    HKEY key = nullptr;
    ::RegOpenKeyExA(root, subKey.c_str(), 0, KEY_READ, &key);
    StoredValue value{REG_NONE, std::string(200'000, '\0')}; // more than any test stores
    auto size = static_cast<DWORD>(value.bytes.size());
    const LSTATUS status =
        ::RegQueryValueExA(key, name, nullptr, &value.type, reinterpret_cast<BYTE*>(value.bytes.data()), &size);
    ::RegCloseKey(key);
    value.bytes.resize(size);
    return status == ERROR_SUCCESS ? std::optional{value} : std::nullopt;
}
