#include "configfiles/UserFile.h"

#include <stdexcept>

#include <Quenlor/QnFileName.h>

#include "core/Paths.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
Utf8String Provide(const UserFile& file)
{
    const QnFileName target{file.path};
    if (Exists(target))
        return target.GetNameUtf8();
    const QnFileName source{file.installedDefault};
    const auto fail = [&](const char* what)
    {
        const QnFileName name{QnFileName::FileNameAndExtension, source.GetName()};
        throw std::runtime_error((name.GetNameUtf8() + what).c_str());
    };
    if (!Exists(source))
        fail(file.origin == UserFile::Origin::Product ? " file not found. The installation of FRAXO.Pro may be corrupt."
                                                      : " file not found.");
    const WString folder = QnFileName::GetDirectoryName(target.GetName());
    const QnFileNameStatus made = QnFileName::CreateNewDirectory(folder.c_str());
    if (made != QnFileNameStatus::Success && made != QnFileNameStatus::AlreadyExists)
        fail(" file target directory could not be created.");
    if (QnFileName::QnCopyFile(source.GetName(), target.GetName(), false) != QnFileNameStatus::Success)
        fail(" file could not be copied.");
    return target.GetNameUtf8();
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
