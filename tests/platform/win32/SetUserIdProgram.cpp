// Prints what variables of the environment can move, a line each. SetUserIdTest.cpp runs it as another user.

#include <cstdio>
#include <cstdlib>

#include <Platform/Win32.h>

#include "DirectoryConfig.h"
#include "registry/Hives.h"

using Quenlor::Fraxo::SharedUtilities::Native::DirectoryConfig;
using Quenlor::StandIn::Registry::HivePath;

int main()
{
    char machineData[MAX_PATH] = "";
    char userData[MAX_PATH] = "";
    ::SHGetFolderPathA(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, machineData);
    ::SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, userData);
    std::printf("user's hive: %s\n", HivePath(HKEY_CURRENT_USER).c_str());
    std::printf("machine's hive: %s\n", HivePath(HKEY_LOCAL_MACHINE).c_str());
    std::printf("machine's data: %s\n", machineData);
    std::printf("user's data: %s\n", userData);
    std::printf("root: %s\n", DirectoryConfig::GetFRAXOProRoot().c_str());
    std::printf("sections: %s\n", DirectoryConfig::GetFraxoSectionDatabaseDirectory().c_str());
}
