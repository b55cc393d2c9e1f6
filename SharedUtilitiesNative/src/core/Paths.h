#pragma once

#include <Quenlor/QnFileName.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

#include "core/Trace.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// A component of a folder. An empty folder has none: nothing recorded is not the current directory.
inline QnFileName InFolder(const Utf8String& folder, const Utf8String& component)
{
    QnFileName path{folder};
    if (!folder.empty())
        path.AppendToPath(QnFileName{component}.GetName());
    return path;
}

/// Whether something is there. An empty path names nothing.
inline bool Exists(const QnFileName& path)
{
    if (*path.GetName() == L'\0')
        return false;
    const bool exists = QnFileName::DoesPathExist(path.GetName());
    if (trace)
        trace->push_back({Source::Kind::Path, path.GetNameUtf8().ToStdString(),
                          exists ? std::optional<std::string>{""} : std::nullopt});
    return exists;
}

/// The path if something is there; otherwise empty.
inline Utf8String IfExists(const QnFileName& path)
{
    return Exists(path) ? path.GetNameUtf8() : Utf8String{};
}

/// The one spelling that all spellings of a path have in common.
inline WString FixedPathOf(const QnFileName& path)
{
    WString fixed;
    QnFileName::FixPathName(fixed, path.GetName());
    return fixed;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
