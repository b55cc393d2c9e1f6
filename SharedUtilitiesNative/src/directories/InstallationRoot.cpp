#include "DirectoryConfig.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "CoreUtilities.h"
#include "core/Paths.h"
#include "directories/OutputRoot.h"
#include "registry/ProductKeys.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
QnFileName CurrentExecutable()
{
    QnFileName executable;
    QnGetModuleFileName(executable, nullptr);
    if (trace)
        trace->push_back({Source::Kind::System, "the executable", executable.GetNameUtf8().ToStdString(), true});
    return executable;
}

/// By the text of the paths, unless it consists of dots, which other names contain. The real path of the root matches
/// as well: the system may have resolved the links in that of the executable.
bool IsExecutableBelow(const Utf8String& root)
{
    if (root.empty())
        return false;
    const WString executable = FixedPathOf(CurrentExecutable());
    const WString folder = FixedPathOf(QnFileName{root});
    const bool isNamed = std::wstring_view{folder.c_str()}.find_first_not_of(LR"(.\)") != std::wstring_view::npos;
    if (isNamed && executable.ContainsI(folder))
        return true;
    std::error_code error;
    const std::u8string real = std::filesystem::canonical(ToNativePath(root), error).u8string();
    return !error && executable.ContainsI(FixedPathOf(QnFileName{std::string{real.begin(), real.end()}}));
}

Utf8String AsFolder(const Utf8String& path)
{
    QnFileName folder{path};
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
