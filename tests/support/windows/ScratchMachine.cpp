#include "support/ScratchMachine.h"

#include <cstdlib>

#include <gtest/gtest.h>
#include <sddl.h>

namespace
{
constexpr char ShellFolders[] = R"(Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders)";

HKEY CreateKey(HKEY root, const std::string& subKey)
{
    HKEY key = nullptr;
    EXPECT_EQ(::RegCreateKeyExA(root, subKey.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                                &key, nullptr),
              ERROR_SUCCESS)
        << subKey;
    return key;
}

void RemoveProductClasses()
{
    ::RegDeleteTreeA(HKEY_CURRENT_USER, R"(Software\Classes\FraxoPro)");
    ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, R"(Software\Classes\FraxoPro)");
}

std::string ScratchKey(const std::filesystem::path& root)
{
    const std::string folder = root.filename().string();
    return R"(Software\Scratch Machines\)" + folder.substr(folder.rfind(' ') + 1);
}
} // namespace

char** ScratchMachine::Environment()
{
    return _environ;
}

void ScratchMachine::PutEnvironment(const std::string& name, const std::optional<std::string>& value)
{
    EXPECT_EQ(::_putenv_s(name.c_str(), value.value_or("").c_str()), 0) << name;
}

void ScratchMachine::TakeRegistry()
{
    ::RegDeleteTreeA(HKEY_CURRENT_USER, ScratchKey(m_root).c_str()); // of a crashed process with the same number
    if (m_classes != ClassesRoot::NotUsed)
        RemoveProductClasses();
    if (m_classes == ClassesRoot::Merged)
        return;
    const HKEY user = CreateKey(HKEY_CURRENT_USER, ScratchKey(m_root) + R"(\User)");
    const HKEY machine = CreateKey(HKEY_CURRENT_USER, ScratchKey(m_root) + R"(\Machine)");
    EXPECT_EQ(::RegOverridePredefKey(HKEY_CURRENT_USER, user), ERROR_SUCCESS);
    EXPECT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine), ERROR_SUCCESS);
    ::RegCloseKey(user);
    ::RegCloseKey(machine);
}

void ScratchMachine::GiveBackRegistry() const
{
    ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    ::RegDeleteTreeA(HKEY_CURRENT_USER, ScratchKey(m_root).c_str());
    if (m_classes != ClassesRoot::NotUsed)
        RemoveProductClasses();
}

void ScratchMachine::MoveShellFolder(ShellFolder folder, const std::string& path)
{
    const bool isShared = folder == ShellFolder::ProgramData;
    WriteText(isShared ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, ShellFolders,
              isShared ? "Common AppData" : "Local AppData", path);
}

void ScratchMachine::WhileReadOnly(HKEY root, const std::string& subKey, const std::function<void()>& body) const
{
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(root, subKey.c_str(), 0, WRITE_DAC | KEY_WOW64_64KEY, &key), ERROR_SUCCESS);
    const auto setPermissions = [key](const char* list)
    {
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        EXPECT_TRUE(
            ::ConvertStringSecurityDescriptorToSecurityDescriptorA(list, SDDL_REVISION_1, &descriptor, nullptr));
        EXPECT_EQ(::RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor), ERROR_SUCCESS);
        ::LocalFree(descriptor);
    };
    setPermissions("D:(A;;KR;;;WD)"); // everyone may read
    body();
    setPermissions("D:(A;;KA;;;WD)");
    ::RegCloseKey(key);
}
