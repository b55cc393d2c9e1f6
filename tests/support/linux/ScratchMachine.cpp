#include "support/ScratchMachine.h"

#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "registry/Hives.h"

char** ScratchMachine::Environment()
{
    return ::environ;
}

void ScratchMachine::PutEnvironment(const std::string& name, const std::optional<std::string>& value)
{
    EXPECT_EQ(value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str()), 0) << name;
}

void ScratchMachine::TakeRegistry()
{
    SetEnvironment("QUENLOR_REGISTRY_DIR", (m_root / "Registry").string());
    Quenlor::StandIn::Registry::LocateHives();
}

void ScratchMachine::GiveBackRegistry() const {}

void ScratchMachine::MoveShellFolder(ShellFolder folder, const std::string& path)
{
    SetEnvironment(folder == ShellFolder::ProgramData ? "PROGRAMDATA" : "LOCALAPPDATA", path);
}

void ScratchMachine::WhileReadOnly(HKEY, const std::string&, const std::function<void()>& body) const
{
    // No file can grow. Permissions would not do: they mean nothing to root, as which tests often run.
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = former.rlim_max};
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
    body();
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &former), 0);
    std::signal(SIGXFSZ, formerHandler);
}
