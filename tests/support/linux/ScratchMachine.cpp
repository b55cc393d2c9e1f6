#include "support/ScratchMachine.h"

#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "registry/Hives.h"

char** ScratchMachine::Environment()
{
    return ::environ;
}

void ScratchMachine::SetEnvironment(const std::string& name, const std::optional<std::string>& value) const
{
    EXPECT_EQ(value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str()), 0) << name;
}

void ScratchMachine::TakeRegistry() const
{
    SetEnvironment("QUENLOR_REGISTRY_DIR", (m_root / "Registry").string());
    Quenlor::StandIn::Registry::LocateHives();
}

void ScratchMachine::GiveBackRegistry() const {}

void ScratchMachine::MoveShellFolder(ShellFolder folder, const std::string& path) const
{
    SetEnvironment(folder == ShellFolder::ProgramData ? "PROGRAMDATA" : "LOCALAPPDATA", path);
}

int ScratchMachine::Run(std::string command) const
{
    return WEXITSTATUS(std::system(command.c_str()));
}
