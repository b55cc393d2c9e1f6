#include "configfiles/UserFile.h"

#include <stdexcept>

#include <Quenlor/QnFileName.h>

#include "DirectoryConfig.h"
#include "core/Paths.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
[[noreturn]] void Fail(const QnFileName& installedDefault, const char* what)
{
    QnFileName name{QnFileName::FileNameAndExtension, installedDefault.GetName()};
    throw std::runtime_error((name.GetNameUtf8() + what).c_str());
}

void CopyDefaultFileIfMissing(const QnFileName& target, const QnFileName& source, UserFile::Origin origin)
{
    if (Exists(target))
        return;
    if (!Exists(source))
        Fail(source, origin == UserFile::Origin::Product
                         ? " file not found. The installation of FRAXO.Pro may be corrupt."
                         : " file not found.");
    const QnFileNameStatus made =
        QnFileName::CreateNewDirectory(QnFileName::GetDirectoryName(target.GetName()).c_str());
    if (made != QnFileNameStatus::Success && made != QnFileNameStatus::AlreadyExists)
        Fail(source, " file target directory could not be created.");
    if (QnFileName::QnCopyFile(source.GetName(), target.GetName(), false) != QnFileNameStatus::Success)
        Fail(source, " file could not be copied.");
}
} // namespace

Utf8String InUserDefaults(const Utf8String& tail)
{
    return DirectoryConfig::GetConfigurationDirectory() + tail;
}

Utf8String Provide(const UserFile& file)
{
    const QnFileName target = PathOf(file.path);
    CopyDefaultFileIfMissing(target, PathOf(file.installedDefault), file.origin);
    return target.GetNameUtf8();
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
