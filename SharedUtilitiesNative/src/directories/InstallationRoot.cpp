#include "DirectoryConfig.h"

#include "CoreUtilities.h"
#include "core/Paths.h"
#include "directories/OutputRoot.h"
#include "registry/InstallationRecord.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
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

Utf8String AsFolder(const Utf8String& path)
{
    QnFileName folder = PathOf(path);
    folder.AppendSeparator();
    return folder.GetNameUtf8();
}
} // namespace

std::optional<Utf8String> OutputRoot()
{
    const Utf8String root = GetEnvironmentVariableValue("FRAXO_PRO_ROOT_DIRECTORY");
    return IsExecutableBelow(root) ? std::optional{AsFolder(root)} : std::nullopt;
}

bool DirectoryConfig::IsRunningFromOutput()
{
    return OutputRoot().has_value();
}

Utf8String DirectoryConfig::GetFRAXOProRoot()
{
    const std::optional<Utf8String> output = OutputRoot();
    return output ? *output : AsFolder(InstallationRecord("RootDir"));
}

QnFileName DirectoryConfig::GetCurrentExeDirectory()
{
    QnFileName directory;
    directory.SetName(QnFileName::GetDirectoryName(CurrentExecutable().GetName()).c_str());
    return directory;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
