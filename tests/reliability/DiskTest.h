#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include <Quenlor/QnFileName.h>
#include <gmock/gmock.h>

#include "RegistryHelper.h"
#include "registry/Hive.h"
#include "registry/RegistryFileWriter.h"
#include "reliability/Attacks.h"
#include "reliability/FailingCalls.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// What a failing disk and a power failure have in common: writes of settings and copies of files, made step by step,
// and what the library then reads from the files.

namespace fs = std::filesystem;

/// The folder that is written to, and what belongs in it.
struct Place
{
    ScratchMachine machine;
    int fault = 0; ///< The error that the calls give at present.
    fs::path user = machine.Root() / "Registry";
    fs::path hive = user / "HKEY_CURRENT_USER.reg";
    fs::path skipped = user / "HKEY_CURRENT_USER.reg.skipped";
    fs::path installed = machine.Root() / "Default.ini";
    fs::path copy = user / "folder" / "User.ini";
};

/// @return whether a registry function succeeded; it may fail only with the code of the fault
inline bool Succeeded(const Place& place, LSTATUS status)
{
    EXPECT_THAT(status, ::testing::AnyOf(ERROR_SUCCESS,
                                         place.fault == EACCES ? ERROR_ACCESS_DENIED : ERROR_REGISTRY_IO_FAILED));
    return status == ERROR_SUCCESS;
}

// Each step changes the hive, or the copy, once. It returns whether it reports success.

inline bool SetText(const Place& place)
{
    constexpr BYTE text[1'500] = "of several sectors";
    return Succeeded(place, ::RegSetValueExA(HKEY_CURRENT_USER, "t", 0, REG_BINARY, text, sizeof text));
}

inline bool SetNumber(const Place&)
{
    using namespace Quenlor::Fraxo::SharedUtilities::Native;
    return RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "", "n", 22);
}

inline bool CreateKey(const Place& place)
{
    HKEY key = nullptr;
    const LSTATUS status =
        ::RegCreateKeyExA(HKEY_CURRENT_USER, "Key", 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    ::RegCloseKey(key);
    return Succeeded(place, status);
}

inline bool DeleteKey(const Place& place)
{
    const LSTATUS status = ::RegDeleteTreeA(HKEY_CURRENT_USER, "Key");
    return status == ERROR_FILE_NOT_FOUND || Succeeded(place, status);
}

inline bool Provide(const Place& place)
{
    const std::string message = MessageOf({place.copy.string(), place.installed.string()});
    EXPECT_THAT(message, ::testing::AnyOf("", "Default.ini file target directory could not be created.",
                                          "Default.ini file could not be copied.",
                                          "Default.ini file not found. The installation of FRAXO.Pro may be corrupt."));
    return message.empty();
}

inline bool CopyOver(const Place& place)
{
    using namespace Quenlor;
    return QnFileName::QnCopyFile(place.installed.wstring().c_str(), place.copy.wstring().c_str(), true) ==
           QnFileNameStatus::Success;
}

struct Operation
{
    std::string name;
    fs::path Place::*target;
    const char* before; ///< What is in the target; null when its folder is missing as well.
    std::vector<bool (*)(const Place&)> steps;
    bool hasUnnamedFiles = true;

    friend void PrintTo(const Operation& operation, std::ostream* stream) { *stream << operation.name; }
};

constexpr char MalformedLine[] = "\"n\"=dword:x\n";
constexpr char MalformedHive[] = "REGEDIT4\n\n[HKEY_CURRENT_USER]\n\"a\"=\"b\"\n\"n\"=dword:x\n";
inline const Operation Operations[] = {
    {"ANewHive", &Place::hive, nullptr, {SetText, SetNumber}},
    {"AMalformedHive", &Place::hive, MalformedHive, {SetNumber, SetText}},
    {"ACopyInANewFolder", &Place::copy, nullptr, {Provide}},
    {"ACopyThatNeedsAName", &Place::copy, nullptr, {Provide}, false},
    {"ACopyInPlaceOfAnother", &Place::copy, "old", {CopyOver}},
};

/// Operations that write nothing when what they ask for exists.
inline const Operation OperationsThatFind[] = {
    {"AKey", &Place::hive, nullptr, {CreateKey, DeleteKey}},
    {"ACopyThatIsThere", &Place::copy, "the user's", {Provide}},
};

class DiskTest : public ::testing::TestWithParam<Operation>
{
protected:
    explicit DiskTest(std::size_t installedSize)
    {
        WriteFile(m_place.installed, std::string(installedSize, 'd'));
        for (std::size_t step = 0; step <= Steps(); ++step)
        {
            MakeSteps(step);
            m_views.push_back(View());
        }
        MakeSteps(0);
    }

    bool IsHive() const { return GetParam().target == &Place::hive; }
    fs::path Target() const { return m_place.*GetParam().target; }
    std::size_t Steps() const { return GetParam().steps.size(); }

    /// What the library reads from the files.
    std::string View() const
    {
        using namespace Quenlor::StandIn::Registry;
        if (!IsHive())
            return exists(m_place.copy) ? ReadFile(m_place.copy) : "none";
        Hive hive{HKEY_CURRENT_USER, m_place.hive};
        std::string view = std::to_string(hive.Refresh());
        view += std::to_string(hive.Problems().size()) + '\n';
        if ((ReadFile(m_place.hive) + ReadFile(m_place.skipped)).find(MalformedLine) != std::string::npos)
            view += MalformedLine;
        return view + WriteRegistryFile(hive.Root(), "HKEY_CURRENT_USER", RegistryFileForm::Hive);
    }

    /// Makes the first steps from the start.
    void MakeSteps(std::size_t count)
    {
        fs::remove_all(m_place.user);
        if (GetParam().before)
            WriteFile(Target(), GetParam().before);
        m_record.clear();
        for (std::size_t step = 0; step < count; ++step)
            EXPECT_TRUE(MakeStep(step, {}));
    }

    /// @return whether it reports success
    bool MakeStep(std::size_t step, FailingCalls::Plan plan)
    {
        plan.hasUnnamedFiles = GetParam().hasUnnamedFiles;
        plan.record = &m_record;
        m_place.fault = plan.fault;
        FailingCalls::Begin(plan);
        const bool success = GetParam().steps[step](m_place);
        m_calls = FailingCalls::End();
        if (success)
            m_record.push_back({Reported});
        return success;
    }

    static constexpr char Reported[] = "report"; ///< In the record: a step has reported success.

    Place m_place;
    std::vector<std::string> m_views;           ///< Before the first step, after it, and so on.
    std::vector<FailingCalls::Change> m_record; ///< Since the start.
    std::vector<std::string> m_calls;           ///< Of the last step, to the file system.
};
