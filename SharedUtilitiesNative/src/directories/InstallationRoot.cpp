#include "DirectoryConfig.h"

#include "CoreUtilities.h"
#include "core/Paths.h"
#include "registry/InstallationRecord.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
Utf8String OutputRoot()
{
    return GetEnvironmentVariableValue("FRAXO_PRO_ROOT_DIRECTORY");
}

QnFileName CurrentExecutable()
{
    QnFileName executable;
    QnGetModuleFileName(executable, nullptr);
    Trace([&] { return Inquiry{Inquiry::Source::System, "the executable", executable.GetNameUtf8().ToStdString()}; });
    return executable;
}

bool IsExecutableBelow(const Utf8String& root)
{
    return !root.empty() && FixedPathOf(CurrentExecutable()).ContainsI(FixedPathOf(PathOf(root)));
}
} // namespace

bool DirectoryConfig::IsRunningFromOutput()
{
    return IsExecutableBelow(OutputRoot());
}

Utf8String DirectoryConfig::GetFRAXOProRoot()
{
    QnFileName root = PathOf(IsRunningFromOutput() ? OutputRoot() : InstallationRecord("RootDir"));
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
