#include "support/ChildProcess.h"

#include <Platform/Win32.h>
#include <gtest/gtest.h>

ChildProcess::ChildProcess(const std::vector<std::string>& command)
{
    std::string line;
    for (const std::string& word : command)
        line += '"' + word + "\" ";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    EXPECT_TRUE(
        ::CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        << line;
    ::CloseHandle(process.hThread);
    m_process = reinterpret_cast<std::intptr_t>(process.hProcess);
}

void ChildProcess::Kill()
{
    if (m_process == 0)
        return;
    ::TerminateProcess(reinterpret_cast<HANDLE>(m_process), static_cast<UINT>(-1));
    Wait();
}

int ChildProcess::Wait()
{
    const auto process = reinterpret_cast<HANDLE>(m_process);
    DWORD code = 0;
    ::WaitForSingleObject(process, INFINITE);
    ::GetExitCodeProcess(process, &code);
    ::CloseHandle(process);
    m_process = 0;
    return static_cast<int>(code);
}
