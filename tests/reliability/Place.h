#pragma once

#include <filesystem>
#include <stdexcept>

#include <Quenlor/QnFileName.h>
#include <gmock/gmock.h>

#include "configfiles/UserFile.h"
#include "support/ScratchMachine.h"

namespace fs = std::filesystem;

/// The folder that is written to, and what belongs in it.
struct Place
{
    ScratchMachine machine;
    int fault = 0; ///< What is done to the calls at present.
    fs::path user = machine.Root() / "Registry";
    fs::path hive = user / "HKEY_CURRENT_USER.reg";
    fs::path skipped = user / "HKEY_CURRENT_USER.reg.skipped";
    fs::path installed = machine.Root() / "Default.ini";
    fs::path copy = user / "folder" / "User.ini";
};

inline bool Provided(const Place& place)
try
{
    Quenlor::Fraxo::SharedUtilities::Native::Provide({place.copy.string(), place.installed.string()});
    return true;
}
catch (const std::runtime_error& error)
{
    using namespace ::testing;
    EXPECT_THAT(error.what(), AnyOf(StrEq("Default.ini file not found. The installation of FRAXO.Pro may be corrupt."),
                                    StrEq("Default.ini file target directory could not be created."),
                                    StrEq("Default.ini file could not be copied.")));
    return false;
}

inline bool CopyOver(const Place& place)
{
    using namespace Quenlor;
    return QnFileName::QnCopyFile(place.installed.wstring().c_str(), place.copy.wstring().c_str(), true) ==
           QnFileNameStatus::Success;
}
