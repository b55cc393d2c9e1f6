#include <cerrno>
#include <filesystem>
#include <functional>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "RegistryHelper.h"
#include "registry/Hive.h"
#include "registry/RegistryFileWriter.h"
#include "reliability/FailingCalls.h"
#include "reliability/Place.h"
#include "reliability/Processes.h"
#include "support/Files.h"

// Each call to the file system that a write or a copy makes fails in turn, in each way, once and from then on. The
// calls are counted in a first run, so that none can be forgotten; that the library in between knows all that are made
// is checked by InterposedCalls.cmake.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::StandIn::Registry;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char PlainHive[] = "REGEDIT4\n\n[HKEY_CURRENT_USER\\Key]\n\"n\"=\"old\"\n";
constexpr char MalformedHive[] = "REGEDIT4\n\n[HKEY_CURRENT_USER\\Key]\n\"n\"=\"old\"\n\"malformed\"=dword:x\n";

struct Operation
{
    std::string name;
    fs::path Place::*target;
    const char* before;                    ///< What is in the target; null when not even its folder is there.
    std::function<bool(const Place&)> run; ///< @return whether it reports success
    std::function<void()> opening = [] {}; ///< Its first step, of which a trace may stay when a later one fails.
    bool reportsOpening = true;            ///< Whether it reports that this step failed.
    std::string keeps = "";                ///< What must not get lost although it does not stay in the target.
    bool hasUnnamedFiles = true;
};

bool SetText(const Place&)
{
    return !RegistryHelper::SetStringValue(HKEY_CURRENT_USER, "Key", "n", "the new text"); // true is a failure
}

void OpenKey()
{
    HKEY key = nullptr;
    ::RegCreateKeyExA(HKEY_CURRENT_USER, "Key", 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    ::RegCloseKey(key);
}

bool SetNumber(const Place&)
{
    return RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "Key", "n", 22);
}

bool DeleteKey(const Place& place)
{
    const LSTATUS status = ::RegDeleteTreeA(HKEY_CURRENT_USER, "Key");
    if (status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND)
        return true;
    EXPECT_EQ(status, place.fault == EACCES ? ERROR_ACCESS_DENIED : ERROR_REGISTRY_IO_FAILED);
    return false;
}

const Operation Operations[] = {
    {"ATextInAMalformedHive", &Place::hive, MalformedHive, SetText, OpenKey, false, "\"malformed\"=dword:x\n"},
    {"ANumberInANewHive", &Place::hive, nullptr, SetNumber, OpenKey},
    {"ADeletion", &Place::hive, PlainHive, DeleteKey},
    {"ACopyInANewFolder", &Place::copy, nullptr, Provided},
    {.name = "ACopyThatNeedsAName",
     .target = &Place::copy,
     .before = nullptr,
     .run = Provided,
     .hasUnnamedFiles = false},
    {"ACopyInPlaceOfAnother", &Place::copy, "old", CopyOver},
    {"ACopyThatIsThere", &Place::copy, "the user's", Provided},
};

void PrintTo(const Operation& operation, std::ostream* stream)
{
    *stream << operation.name;
}

struct Fault
{
    std::string name;
    int code;
    bool canLast;
};

const Fault Faults[] = {
    {"EIO", EIO, true},
    {"ENOSPC", ENOSPC, true},
    {"EACCES", EACCES, true},
    {"EINTR", EINTR, false}, // a call that is interrupted for ever is repeated for ever
    {"half a transfer", FailingCalls::HalfTransfer, true},
    {"the end of the process", FailingCalls::Killed, false},
};

std::ptrdiff_t OpenFiles()
{
    return std::distance(fs::directory_iterator{"/proc/self/fd"}, fs::directory_iterator{});
}

class FailingDiskTest : public ::testing::TestWithParam<Operation>
{
protected:
    FailingDiskTest() { WriteFile(m_place.installed, std::string(66'000, 'd')); }

    fs::path Target() const { return m_place.*GetParam().target; }
    bool IsCopy() const { return Target() == m_place.copy; }

    void Prepare()
    {
        fs::remove_all(m_place.user);
        if (GetParam().before)
            WriteFile(Target(), GetParam().before);
        m_reader.Refresh();
    }

    /// Another program that reads the hive all the time misses no change.
    void ExpectThatReadersAreCurrent()
    {
        Hive fresh{HKEY_CURRENT_USER, m_place.hive};
        EXPECT_EQ(fresh.Refresh(), ERROR_SUCCESS);
        EXPECT_EQ(m_reader.Refresh(), ERROR_SUCCESS);
        const auto text = [](const Hive& hive)
        { return WriteRegistryFile(hive.Root(), "HKEY_CURRENT_USER", RegistryFileForm::Hive); };
        EXPECT_EQ(text(m_reader), text(fresh));
    }

    /// Runs an action from the start under a plan. @return the calls that it made
    std::vector<std::string> Run(const std::function<void()>& action, FailingCalls::Plan plan = {})
    {
        Prepare();
        plan.hasUnnamedFiles = GetParam().hasUnnamedFiles;
        FailingCalls::Begin(plan);
        action();
        return FailingCalls::End();
    }

    /// @param mayBeSilent whether this is where the operation does not report failures
    void Attack(const FailingCalls::Plan& plan, const std::string& call, bool mayBeSilent)
    {
        const auto run = [this] { return GetParam().run(m_place); };
        const fs::path folder = Target().parent_path();
        const bool isKilled = plan.fault == FailingCalls::Killed;
        const std::ptrdiff_t open = OpenFiles();
        bool success = false;
        m_place.fault = plan.fault;
        Run([&] { success = isKilled ? ExitCode(Start(run)) == 1 : run(); }, plan);

        EXPECT_EQ(OpenFiles(), open);
        const std::string left = ReadFile(Target());
        EXPECT_THAT(m_states, Contains(left));
        EXPECT_THAT(left + ReadFile(m_place.skipped), HasSubstr(GetParam().keeps));
        EXPECT_TRUE(left == m_states.back() || !success || mayBeSilent);
        EXPECT_TRUE(success || (plan.fault != EINTR && plan.fault != FailingCalls::HalfTransfer)) << "no failure";
        EXPECT_TRUE(TemporaryFiles(folder).empty() || isKilled || plan.isLasting || call.starts_with("unlink"));
        ExpectThatReadersAreCurrent();

        // The disk works again, some time has passed.
        AgeTemporaryFiles(folder);
        EXPECT_TRUE(run() && (!IsCopy() || CopyOver(m_place)));
        EXPECT_TRUE(ReadFile(Target()) == (IsCopy() ? ReadFile(m_place.installed) : m_states.back()));
        EXPECT_THAT(TemporaryFiles(folder), IsEmpty());
        ExpectThatReadersAreCurrent();
    }

    Place m_place;
    std::vector<std::string> m_states; ///< What may be in the target: the old text first, the new one last.
    Hive m_reader{HKEY_CURRENT_USER, m_place.hive};
};

TEST_P(FailingDiskTest, LosesNothingAndSaysSo)
{
    const auto run = [this] { EXPECT_TRUE(GetParam().run(m_place)); };
    const auto remember = [this] { m_states.push_back(ReadFile(Target())); };
    Run(run); // so that what the process remembers is the same from now on
    Prepare();
    remember();
    const std::size_t opening = Run(GetParam().opening).size();
    remember();
    const std::vector<std::string> calls = Run(run);
    remember();

    int attacks = 0;
    for (const Fault& fault : Faults)
    {
        for (std::size_t i = 0; i < calls.size() && !HasFailure(); ++i)
        {
            for (const bool isLasting : {false, true})
            {
                if ((isLasting && !fault.canLast) || !FailingCalls::CanHappen(fault.code, calls[i]))
                    continue;
                SCOPED_TRACE(fault.name + (isLasting ? " from call " : " of call ") + std::to_string(i) + ", " +
                             calls[i]);
                Attack({i + 1, isLasting, fault.code}, calls[i], i < opening && !GetParam().reportsOpening);
                ++attacks;
            }
        }
    }
    Conclude("failing disk, " + GetParam().name, {{"calls", calls.size()}, {"attacks", attacks}},
             {{"losses, leaks or silent failures", HasFailure()}});
}

INSTANTIATE_TEST_SUITE_P(, FailingDiskTest, ::testing::ValuesIn(Operations),
                         [](const auto& row) { return row.param.name; });
} // namespace
