#include "support/ScratchMachine.h"

#include <cstdlib>

#include <gtest/gtest.h>

char** ScratchMachine::Environment()
{
    return _environ;
}

void ScratchMachine::SetEnvironment(const std::string& name, const std::optional<std::string>& value) const
{
    EXPECT_EQ(::_putenv_s(name.c_str(), value.value_or("").c_str()), 0) << name;
}

void ScratchMachine::TakeRegistry() const
{
    if (m_classes == ClassesRoot::Merged)
        return;
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) // the last holds both
    {
        HKEY key = nullptr;
        const std::string name = m_root.filename().string() + (root == HKEY_CURRENT_USER ? R"(\User)" : R"(\Machine)");
        EXPECT_EQ(::RegCreateKeyA(HKEY_CURRENT_USER, name.c_str(), &key), ERROR_SUCCESS);
        EXPECT_EQ(::RegOverridePredefKey(root, key), ERROR_SUCCESS);
        ::RegCloseKey(key);
    }
}

void ScratchMachine::GiveBackRegistry() const
{
    ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    ::RegDeleteTreeA(HKEY_CURRENT_USER, m_root.filename().string().c_str());
    if (m_classes == ClassesRoot::NotUsed)
        return;
    ::RegDeleteTreeA(HKEY_CURRENT_USER, R"(Software\Classes\FraxoPro)");
    ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, R"(Software\Classes\FraxoPro)");
}

void ScratchMachine::MoveShellFolder(ShellFolder folder, const std::string& path) const
{
    constexpr char key[] = R"(Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders)";
    const bool isShared = folder == ShellFolder::ProgramData;
    WriteText(isShared ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, key, isShared ? "Common AppData" : "Local AppData",
              path);
}

int ScratchMachine::Run(std::string command) const
{
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    EXPECT_TRUE(
        ::CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        << command;
    DWORD code = 0;
    ::WaitForSingleObject(process.hProcess, INFINITE);
    ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hProcess);
    ::CloseHandle(process.hThread);
    return static_cast<int>(code);
}
