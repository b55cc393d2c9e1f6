#include <Platform/Win32.h> // before the public header, to test that order as well

#include "PerMonitorDPIHelper.h"

#include <gtest/gtest.h>

#include "CoreUtilities.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::PerMonitorDPIHelper;

TEST(SetPerMonitorDPIAware, SucceedsOnceInAProcess)
{
    PROCESS_DPI_AWARENESS awareness = PROCESS_SYSTEM_DPI_AWARE;
    EXPECT_TRUE(PerMonitorDPIHelper::GetPerMonitorDPIAware(&awareness));
    EXPECT_EQ(awareness, PROCESS_DPI_UNAWARE);
    EXPECT_TRUE(PerMonitorDPIHelper::SetPerMonitorDPIAware());
    EXPECT_FALSE(PerMonitorDPIHelper::SetPerMonitorDPIAware());
}

TEST(DpiOfWindowAndSystem, AreThoseOfTheScreen)
{
    const std::string set = GetEnvironmentVariableValue("FRAXO_SCREEN_DPI"); // by scripts/wine
    const double dpi = set.empty() ? 96 : std::stod(set);
    PerMonitorDPIHelper::SetPerMonitorDPIAware();
    EXPECT_EQ(PerMonitorDPIHelper::GetDpiForWindow(reinterpret_cast<HWND>(std::intptr_t{0x1234})), dpi) << "no window";
    EXPECT_EQ(PerMonitorDPIHelper::GetSystemDPI(), dpi);
}
} // namespace
