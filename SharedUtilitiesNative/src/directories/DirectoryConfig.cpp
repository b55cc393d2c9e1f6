#include "DirectoryConfig.h"

#include <string>

#include <Platform/Win32.h>

#include "CoreUtilities.h"
#include "RegistryHelper.h"
#include "VersionConfig.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
std::string OutputRoot()
{
    return GetEnvironmentVariableValue("FRAXO_PRO_ROOT_DIRECTORY");
}

QnFileName CurrentExecutable()
{
    QnFileName executable;
    QnGetModuleFileName(executable, nullptr);
    return executable;
}

QnFileName FromUtf8(const Utf8String& path)
{
    QnFileName name;
    name.SetNameUtf8(path.c_str());
    return name;
}

WString Fixed(const QnFileName& path)
{
    WString fixed;
    QnFileName::FixPathName(fixed, path.GetName());
    return fixed;
}
} // namespace

bool DirectoryConfig::IsRunningFromOutput()
{
    const std::string root = OutputRoot();
    return !root.empty() && Fixed(CurrentExecutable()).ContainsI(Fixed(FromUtf8(root)));
}

Utf8String DirectoryConfig::GetFRAXOProRoot()
{
    QnFileName root = FromUtf8(
        IsRunningFromOutput()
            ? Utf8String{OutputRoot()}
            : RegistryHelper::GetStringValue(HKEY_CLASSES_ROOT, VersionConfig::GetVersionStamp(), "RootDir", {}));
    root.AppendSeparator();
    return root.GetNameUtf8();
}

QnFileName DirectoryConfig::GetCurrentExeDirectory()
{
    QnFileName directory;
    directory.SetName(QnFileName::GetDirectoryName(CurrentExecutable().GetName()).c_str());
    return directory;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
