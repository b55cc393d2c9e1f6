#include "support/ScratchMachine.h"

#include <cstdlib>
#include <cstring>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

namespace
{
/// Always the 64-bit view, as in the library.
HKEY OpenKey(HKEY root, const std::string& subKey, REGSAM access)
{
    HKEY key = nullptr;
    return ::RegOpenKeyExA(root, subKey.c_str(), 0, access | KEY_WOW64_64KEY, &key) == ERROR_SUCCESS ? key : nullptr;
}

bool IsReadByTheLibrary(std::string_view variable)
{
    return variable.starts_with("FRAXO_PRO_") || variable.starts_with("FPRO_FEATURE_") ||
           variable.starts_with("QUENLOR_");
}

std::string Utf8(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}
} // namespace

ScratchMachine::ScratchMachine(ClassesRoot classes) : m_classes{classes}
{
    static int count = 0;
    const std::string name = std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++count);
    m_root = std::filesystem::temp_directory_path() / ("Scratch Machine " + name);
    std::filesystem::remove_all(m_root); // of a crashed process with the same number
    std::filesystem::create_directory(m_root);

    std::vector<std::string> variables; // which change while they are removed
    for (char** variable = Environment(); variable && *variable; ++variable)
        variables.emplace_back(*variable, std::strcspn(*variable, "="));
    for (const std::string& variable : variables)
    {
        if (IsReadByTheLibrary(variable))
            SetEnvironment(variable, {});
    }
    TakeRegistry();
    if (m_classes == ClassesRoot::Merged)
        return;
    MoveShellFolder(ShellFolder::ProgramData, (m_root / "ProgramData").string());
    MoveShellFolder(ShellFolder::LocalAppData, (m_root / "LocalAppData").string());
    for (const char* const folder : {"ProgramData", "LocalAppData"})
        std::filesystem::create_directory(m_root / folder);
}

ScratchMachine::~ScratchMachine()
{
    GiveBackRegistry();
    for (const auto& [name, value] : m_formerEnvironment)
        PutEnvironment(name, value);
    std::error_code ignored; // what a failed test left open must not hide why it failed
    std::filesystem::remove_all(m_root, ignored);
}

std::string ScratchMachine::Folder(std::string_view name) const
{
    const std::filesystem::path folder = m_root / name;
    std::filesystem::create_directories(folder);
    return Utf8(folder) + '\\';
}

std::string ScratchMachine::ProductFolder(ShellFolder folder) const
{
    return Folder(folder == ShellFolder::ProgramData ? "ProgramData" : "LocalAppData") +
           R"(Quenlor\Engineering\FRAXO.Pro VANTIRE Edition\)";
}

void ScratchMachine::BreakShellFolder(ShellFolder folder)
{
    MoveShellFolder(folder, R"(?:\)"); // relative on one system, malformed on the other
}

void ScratchMachine::SetEnvironment(const std::string& name, const std::optional<std::string>& value)
{
    const char* const former = std::getenv(name.c_str());
    m_formerEnvironment.try_emplace(name, former ? std::optional<std::string>{former} : std::nullopt);
    PutEnvironment(name, value);
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
    ASSERT_EQ(::RegCreateKeyExA(root, subKey.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE | KEY_WOW64_64KEY,
                                nullptr, &key, nullptr),
              ERROR_SUCCESS);
    // The system also stores a NUL that follows the text in memory: here something else follows.
    const std::string guarded = std::string{bytes} + '.';
    EXPECT_EQ(::RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(guarded.data()),
                               static_cast<DWORD>(bytes.length())),
              ERROR_SUCCESS);
    ::RegCloseKey(key);
}

bool ScratchMachine::HasKey(HKEY root, const std::string& subKey) const
{
    const HKEY key = OpenKey(root, subKey, KEY_READ);
    ::RegCloseKey(key);
    return key != nullptr;
}

std::optional<StoredValue> ScratchMachine::ReadData(HKEY root, const std::string& subKey, const char* name) const
{
    const HKEY key = OpenKey(root, subKey, KEY_READ);
    StoredValue value{};
    DWORD size = 0;
    LSTATUS status = ::RegQueryValueExA(key, name, nullptr, &value.type, nullptr, &size);
    if (status == ERROR_SUCCESS)
    {
        value.bytes.resize(size);
        status =
            ::RegQueryValueExA(key, name, nullptr, &value.type, reinterpret_cast<BYTE*>(value.bytes.data()), &size);
    }
    ::RegCloseKey(key);
    return status == ERROR_SUCCESS ? std::optional{value} : std::nullopt;
}

void ScratchMachine::DeleteKey(HKEY root, const std::string& subKey) const
{
    ::RegDeleteTreeA(root, subKey.c_str());
}
