#pragma once

#include <string_view>

#include <gtest/gtest.h>

#include "support/ScratchMachine.h"

/// A test on a machine where the product may be installed. Uses HKEY_CLASSES_ROOT.
class InstallationTest : public ::testing::Test
{
protected:
    static constexpr char InstallationKey[] = R"(FraxoPro\22.00.00)";

    /// Writes the record that an installer leaves.
    void Install(std::string_view root) const
    {
        m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "RootDir", root);
    }

    ScratchMachine m_machine{ScratchMachine::ClassesRoot::Used};
};
