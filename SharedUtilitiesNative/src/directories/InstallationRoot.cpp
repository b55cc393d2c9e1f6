#include "DirectoryConfig.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

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
    Note([&] { return Source{Source::Kind::System, "the executable", executable.GetNameUtf8().ToStdString(), true}; });
    return executable;
}

/// The absolute path of a folder without symbolic links; none when the folder is not there.
std::optional<QnFileName> RealPathOf(const QnFileName& folder)
{
    std::error_code error;
    const std::u8string path = std::filesystem::canonical(folder.ToNativePath(), error).u8string();
    return error ? std::nullopt : std::optional{PathOf(std::string{path.begin(), path.end()})};
}

/// By the text of the paths. The real path of the root matches as well: the system may have resolved the links in that
/// of the executable, and text made of dots alone, which other names contain, says nothing.
bool IsExecutableBelow(const Utf8String& root)
{
    if (root.empty())
        return false;
    const WString executable = FixedPathOf(CurrentExecutable());
    const WString folder = FixedPathOf(PathOf(root));
    const bool isNamed = std::wstring_view{folder.c_str()}.find_first_not_of(LR"(.\)") != std::wstring_view::npos;
    if (isNamed && executable.ContainsI(folder))
        return true;
    const std::optional<QnFileName> real = RealPathOf(PathOf(root));
    return real && executable.ContainsI(FixedPathOf(*real));
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
    const Attempt output;
    const Utf8String root = GetEnvironmentVariableValue("FRAXO_PRO_ROOT_DIRECTORY");
    if (IsExecutableBelow(root))
        return AsFolder(root);
    output.PassOver();
    return {};
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
    return QnFileName{QnFileName::GetDirectoryName(CurrentExecutable().GetName())};
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
