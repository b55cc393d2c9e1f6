#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <Quenlor/QnFileName.h>
#include <gtest/gtest.h>

#include "RegistryHelper.h"
#include "registry/Hive.h"
#include "registry/RegistryFileWriter.h"
#include "reliability/Attacks.h"
#include "reliability/Disk.h"
#include "reliability/FailingCalls.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// Writes of settings and copies of files, made step by step on a disk that fails.

namespace
{
using namespace Quenlor;
using Fraxo::SharedUtilities::Native::RegistryHelper;
using namespace StandIn::Registry;

class DiskTest;

struct Operation
{
    const char* name;
    bool isHive;        ///< Otherwise it is a copy.
    const char* before; ///< What is in the file; null when its folder is missing as well.
    std::vector<bool (DiskTest::*)()> steps;
};

class DiskTest : public ::testing::TestWithParam<Operation>
{
public:
    // Each step changes the hive, or the copy, once. It returns whether it reports success.

    bool SetText()
    {
        constexpr BYTE text[1'500] = "of several sectors";
        return ::RegSetValueExA(HKEY_CURRENT_USER, "t", 0, REG_BINARY, text, sizeof text) == ERROR_SUCCESS;
    }
    bool SetNumber() { return RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "", "n", 22); }
    bool Provide() { return MessageOf({m_copy.string(), m_installed.string()}).empty(); }
    bool CopyOver()
    {
        return QnFileName::QnCopyFile(m_installed.wstring().c_str(), m_copy.wstring().c_str(), true) ==
               QnFileNameStatus::Success;
    }

protected:
    DiskTest()
    {
        WriteFile(m_installed, std::string(3'000, 'd'));
        for (std::size_t step = 0; step <= GetParam().steps.size(); ++step)
        {
            MakeSteps(step);
            m_views.push_back(View());
        }
        MakeSteps(0);
        m_start = Disk{m_machine.Root()};
    }

    /// What the library reads from the files.
    std::string View() const
    {
        Hive hive{HKEY_CURRENT_USER, m_hive};
        return View(hive);
    }
    std::string View(Hive& hive) const
    {
        if (!m_isHive)
            return exists(m_copy) ? ReadFile(m_copy) : "none";
        std::string view = std::to_string(hive.Refresh());
        if ((ReadFile(m_hive) + ReadFile(m_user / "HKEY_CURRENT_USER.reg.skipped")).find(MalformedLine) !=
            std::string::npos)
            view += MalformedLine;
        return view + WriteRegistryFile(hive.Root(), "HKEY_CURRENT_USER", RegistryFileForm::Hive);
    }

    /// Makes the first steps from the start.
    void MakeSteps(std::size_t count)
    {
        fs::remove_all(m_user);
        if (GetParam().before)
            WriteFile(m_target, GetParam().before);
        m_record.clear();
        for (std::size_t step = 0; step < count; ++step)
            EXPECT_TRUE(MakeStep(step, {}));
    }

    /// @return whether it reports success
    bool MakeStep(std::size_t step, const FailingCalls::Plan& plan)
    {
        FailingCalls::Begin(plan);
        const bool success = (this->*GetParam().steps[step])();
        m_calls = FailingCalls::End();
        m_record.insert(m_record.end(), m_calls.begin(), m_calls.end());
        if (success)
            m_record.push_back({Reported});
        return success;
    }

    static std::ptrdiff_t OpenFiles()
    {
        return std::distance(fs::directory_iterator{"/proc/self/fd"}, fs::directory_iterator{});
    }

    /// Makes a step while a call fails, and again when the disk works.
    void Attack(std::size_t step, const FailingCalls::Plan& plan, const std::string& call)
    {
        MakeSteps(step);
        Hive reader{HKEY_CURRENT_USER, m_hive}; // of another program, all the time
        reader.Refresh();
        const fs::path folder = m_target.parent_path();
        const bool isKilled = plan.fault == FailingCalls::Killed;
        const std::ptrdiff_t open = OpenFiles();
        bool success = false;
        if (!isKilled)
            success = MakeStep(step, plan);
        else if (::fork() == 0)
            ::_exit([&]() noexcept { return MakeStep(step, plan); }());
        else
            ::wait(nullptr);

        EXPECT_EQ(OpenFiles(), open);
        const std::string left = View();
        EXPECT_TRUE(left == m_views[step + 1] || (!success && left == m_views[step])) << left;
        EXPECT_TRUE(success || (plan.fault != EINTR && plan.fault != FailingCalls::HalfTransfer)) << "no failure";
        const bool isLeft = CountAndAgeTemporaryFiles(folder) != 0;
        EXPECT_FALSE(isLeft && !isKilled && !plan.isLasting && !call.starts_with("unlink"));
        EXPECT_EQ(View(reader), left);

        // The disk works again, some time has passed.
        EXPECT_TRUE(MakeStep(step, {}));
        EXPECT_EQ(View(), m_views[step + 1]);
        EXPECT_EQ(View(reader), m_views[step + 1]);
        EXPECT_TRUE(m_isHive || CopyOver());
        EXPECT_EQ(CountAndAgeTemporaryFiles(folder), 0U);
    }

    /// Lets the library open what is on the disk. @return what is wrong with it
    std::string FaultOf(const Image& image, std::size_t reported)
    {
        fs::remove_all(m_user);
        for (const auto& [path, text] : image)
        {
            if (!text)
                create_directories(path);
            else if (path != m_installed)
                WriteFile(path, *text);
        }
        const std::string view = View();
        const auto first = m_views.begin() + static_cast<std::ptrdiff_t>(m_isHive ? reported : 0); // a copy may be lost
        const auto last = m_views.begin() + static_cast<std::ptrdiff_t>(std::min(reported + 2, m_views.size()));
        if (std::find(first, last, view) == last)
            return "torn or lost";
        CountAndAgeTemporaryFiles(m_copy.parent_path());
        const bool isWritten = m_isHive
                                   ? ::RegSetValueExA(HKEY_CURRENT_USER, "x", 0, REG_NONE, {}, 0) == ERROR_SUCCESS &&
                                         ::RegDeleteValueA(HKEY_CURRENT_USER, "x") == ERROR_SUCCESS
                                   : Provide() && (view == "none" || View() == view) && CopyOver();
        if (!isWritten)
            return "no more writes";
        const bool isAsExpected = View() == (m_isHive ? view : ReadFile(m_installed));
        return isAsExpected && CountAndAgeTemporaryFiles(m_target.parent_path()) == 0 ? "" : "not as it was";
    }

    /// Tries all states after each of the calls from `first` on. @return the first fault
    std::string FaultOf(const std::vector<FailingCalls::Call>& record, std::size_t first = 0)
    {
        Disk disk = m_start;
        std::set<Image> tried;
        std::size_t reported = 0;
        for (std::size_t i = 0; i < record.size(); ++i)
        {
            const bool isReport = record[i].name == Reported;
            reported += isReport;
            if (isReport) // from now on fewer states are right
                tried.clear();
            if ((!disk.Apply(record[i]) && !isReport) || i < first)
                continue;
            for (const Image& state : StatesOf(disk))
            {
                if (!tried.insert(state).second)
                    continue;
                ++m_states;
                if (const std::string fault = FaultOf(state, reported); !fault.empty())
                    return fault + " after " + std::to_string(i) + ", " + record[i].name;
            }
        }
        return "";
    }

    static constexpr char Reported[] = "report"; ///< In the record: a step has reported success.
    static constexpr char MalformedLine[] = "\"n\"=dword:x\n";

    const ScratchMachine m_machine;
    const fs::path m_user = m_machine.Root() / "Registry"; ///< The folder that is written to.
    const fs::path m_hive = m_user / "HKEY_CURRENT_USER.reg";
    const fs::path m_installed = m_machine.Root() / "Default.ini";
    const fs::path m_copy = m_user / "folder" / "User.ini";
    const bool m_isHive = GetParam().isHive;
    const fs::path m_target = m_isHive ? m_hive : m_copy;

    Disk m_start{m_machine.Root()};           ///< The disk before the first step.
    std::vector<std::string> m_views;         ///< Before the first step, after it, and so on.
    std::vector<FailingCalls::Call> m_record; ///< Since the start.
    std::vector<FailingCalls::Call> m_calls;  ///< Of the last step.
    std::size_t m_states = 0;                 ///< That have been tried.
};

// Each call to the file system that a write or a copy makes fails in turn, in each way, once and from then on. The
// calls are counted in a first run, so that none can be forgotten; InterposedCalls.cmake checks that the library in
// between knows all that are made.
TEST_P(DiskTest, LosesNothingWhenCallsFail)
{
    using FailingCalls::Plan;
    const Plan faults[] = {
        {.isLasting = true, .fault = EIO},
        {.isLasting = true, .fault = ENOSPC},
        {.isLasting = true, .fault = EACCES},
        {.fault = EINTR, .calls = "openat fsync flock close read write"}, // those that wait; not for ever
        {.isLasting = true, .fault = FailingCalls::HalfTransfer, .calls = "read write"},
        {.fault = FailingCalls::Killed},
    };
    std::size_t count = 0, attacks = 0;
    for (std::size_t step = 0; step < GetParam().steps.size(); ++step)
    {
        MakeSteps(step + 1);
        const std::vector<FailingCalls::Call> calls = m_calls;
        count += calls.size();
        for (Plan plan : faults)
        {
            const bool canLast = plan.isLasting;
            for (std::size_t i = 0; i < 2 * calls.size() && !HasFailure(); ++i)
            {
                const std::string& call = calls[i / 2].name;
                plan.first = i / 2 + 1;
                plan.isLasting = i % 2 != 0;
                if ((plan.isLasting && !canLast) || !plan.CanHappenTo(call))
                    continue;
                SCOPED_TRACE(::testing::Message() << "error " << plan.fault << (plan.isLasting ? " from " : " of ")
                                                  << plan.first << ", " << call << ", in step " << step);
                Attack(step, plan, call);
                ++attacks;
            }
        }
    }
    Conclude("failing disk, " + std::string{GetParam().name}, {{"calls", count}, {"attacks", attacks}},
             {{"losses, leaks or silent failures", HasFailure()}});
}

// What a power failure may leave of a write or a copy is laid out in a folder, and the library has to work with it.
TEST_P(DiskTest, LosesNothingWhenThePowerFails)
{
    MakeSteps(GetParam().steps.size());
    const std::vector<FailingCalls::Call> record = m_record;
    EXPECT_EQ(FaultOf(record), "");

    // Each sync is needed, and the model finds what is wrong: it is left out, and made after the renaming that follows.
    std::size_t mutations = 0, missed = 0;
    Disk disk = m_start;
    const auto isRenaming = [](const FailingCalls::Call& call) { return call.paths.size() == 2; };
    for (auto sync = record.begin(); sync != record.end(); ++sync)
    {
        if (!disk.Apply(*sync) || sync->name != "fsync")
            continue;
        const auto at = sync - record.begin();
        const auto renaming = std::find_if(sync, record.end(), isRenaming) - record.begin();
        for (const bool isLate : {false, true})
        {
            std::vector<FailingCalls::Call> mutated = record;
            if (isLate && renaming != std::ssize(record))
                mutated.insert(mutated.begin() + renaming + 1, *sync);
            mutated.erase(mutated.begin() + at);
            ++mutations;
            missed += FaultOf(mutated, static_cast<std::size_t>(at)).empty();
        }
    }

    // All calls from one on fail; the step is made again, and the power fails.
    for (std::size_t step = 0; step < GetParam().steps.size(); ++step)
    {
        MakeSteps(step + 1);
        for (std::size_t call = m_calls.size(); call > 0 && !HasFailure(); --call)
        {
            MakeSteps(step);
            EXPECT_TRUE(MakeStep(step, {call, true, EIO}) || MakeStep(step, {}));
            EXPECT_EQ(FaultOf(m_record, m_record.size() - 1), "") << "call " << call << " failed";
        }
    }
    Conclude("power failure, " + std::string{GetParam().name},
             {{"calls", record.size()}, {"mutations", mutations}, {"states", m_states}},
             {{"losses", HasFailure()}, {"mutations that lose nothing", missed}});
}

const Operation Operations[] = {
    {"ANewHive", true, nullptr, {&DiskTest::SetText, &DiskTest::SetNumber}},
    {"AMalformedHive",
     true,
     "REGEDIT4\n\n[HKEY_CURRENT_USER]\n\"a\"=\"b\"\n\"n\"=dword:x\n",
     {&DiskTest::SetNumber, &DiskTest::SetText}},
    {"ACopyInANewFolder", false, nullptr, {&DiskTest::Provide}},
    {"ACopyInPlaceOfAnother", false, "old", {&DiskTest::CopyOver}},
    {"ACopyThatIsThere", false, "the user's", {&DiskTest::Provide}},
};
INSTANTIATE_TEST_SUITE_P(, DiskTest, ::testing::ValuesIn(Operations), [](const auto& row) { return row.param.name; });
} // namespace
