#include "support/ChildProcess.h"

#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

ChildProcess::ChildProcess(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    for (const std::string& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    pid_t process = 0;
    EXPECT_EQ(::posix_spawn(&process, arguments[0], nullptr, nullptr, arguments.data(), environ), 0) << command[0];
    m_process = process;
}

void ChildProcess::Kill()
{
    if (m_process == 0)
        return;
    ::kill(static_cast<pid_t>(m_process), SIGKILL);
    Wait();
}

int ChildProcess::Wait()
{
    int status = 0;
    ::waitpid(static_cast<pid_t>(m_process), &status, 0);
    m_process = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
