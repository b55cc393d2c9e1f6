#include <cerrno>
#include <filesystem>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "reliability/DiskTest.h"

// Each call to the file system that a write or a copy makes fails in turn, in each way, once and from then on. The
// calls are counted in a first run, so that none can be forgotten; InterposedCalls.cmake checks that the library in
// between knows all that are made.

namespace
{
struct Fault
{
    const char* name;
    int code;
    bool canLast;
};

constexpr Fault Faults[] = {
    {"EIO", EIO, true},
    {"ENOSPC", ENOSPC, true},
    {"EACCES", EACCES, true},
    {"EINTR", EINTR, false}, // a call that is always interrupted is repeated forever
    {"half a transfer", FailingCalls::HalfTransfer, true},
    {"the end of the process", FailingCalls::Killed, false},
};

std::ptrdiff_t OpenFiles()
{
    return std::distance(fs::directory_iterator{"/proc/self/fd"}, fs::directory_iterator{});
}

class FailingDiskTest : public DiskTest
{
protected:
    FailingDiskTest() : DiskTest{66'000} {}

    /// In a process of its own, which may be killed.
    bool MakeStepElsewhere(std::size_t step, const FailingCalls::Plan& plan)
    {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit([&]() noexcept { return MakeStep(step, plan); }());
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 1;
    }

    /// Another program that reads the hive all the time misses no change.
    void ExpectThatReadersAreCurrent()
    {
        using namespace Quenlor::StandIn::Registry;
        Hive fresh{HKEY_CURRENT_USER, m_place.hive};
        EXPECT_EQ(fresh.Refresh(), ERROR_SUCCESS);
        EXPECT_EQ(m_reader.Refresh(), ERROR_SUCCESS);
        const auto text = [](const auto& hive)
        { return WriteRegistryFile(hive.Root(), "HKEY_CURRENT_USER", RegistryFileForm::Hive); };
        EXPECT_EQ(text(m_reader), text(fresh));
    }

    /// Makes a step while a call fails, and again when the disk works.
    void Attack(std::size_t step, const FailingCalls::Plan& plan, const std::string& call)
    {
        MakeSteps(step);
        m_reader.Refresh();
        const fs::path folder = Target().parent_path();
        const bool isKilled = plan.fault == FailingCalls::Killed;
        const std::ptrdiff_t open = OpenFiles();
        const bool success = isKilled ? MakeStepElsewhere(step, plan) : MakeStep(step, plan);

        EXPECT_EQ(OpenFiles(), open);
        const std::string left = View();
        EXPECT_TRUE(left == m_views[step + 1] || (!success && left == m_views[step])) << left;
        EXPECT_TRUE(success || (plan.fault != EINTR && plan.fault != FailingCalls::HalfTransfer)) << "no failure";
        EXPECT_TRUE(TemporaryFiles(folder).empty() || isKilled || plan.isLasting || call.starts_with("unlink"));
        ExpectThatReadersAreCurrent();

        // The disk works again, some time has passed.
        AgeTemporaryFiles(folder);
        EXPECT_TRUE(MakeStep(step, {}) && View() == m_views[step + 1]);
        EXPECT_TRUE(IsHive() || CopyOver(m_place));
        EXPECT_THAT(TemporaryFiles(folder), ::testing::IsEmpty());
        ExpectThatReadersAreCurrent();
    }

    Quenlor::StandIn::Registry::Hive m_reader{HKEY_CURRENT_USER, m_place.hive};
};

TEST_P(FailingDiskTest, LosesNothingAndReportsFailures)
{
    std::size_t count = 0, attacks = 0;
    for (std::size_t step = 0; step < Steps(); ++step)
    {
        MakeSteps(step + 1);
        const std::vector<std::string> calls = m_calls;
        count += calls.size();
        for (const Fault& fault : Faults)
        {
            for (std::size_t i = 0; i < 2 * calls.size() && !HasFailure(); ++i)
            {
                const std::string& call = calls[i / 2];
                const bool isLasting = i % 2 != 0;
                if ((isLasting && !fault.canLast) || !FailingCalls::CanHappen(fault.code, call))
                    continue;
                SCOPED_TRACE(::testing::Message() << fault.name << (isLasting ? " from call " : " of call ") << i / 2
                                                  << ", " << call << ", in step " << step);
                Attack(step, {i / 2 + 1, isLasting, fault.code}, call);
                ++attacks;
            }
        }
    }
    Conclude("failing disk, " + GetParam().name, {{"calls", count}, {"attacks", attacks}},
             {{"losses, leaks or silent failures", HasFailure()}});
}

const auto NameOf = [](const auto& row) { return row.param.name; };
INSTANTIATE_TEST_SUITE_P(, FailingDiskTest, ::testing::ValuesIn(Operations), NameOf);
INSTANTIATE_TEST_SUITE_P(Finding, FailingDiskTest, ::testing::ValuesIn(OperationsThatFind), NameOf);
} // namespace
