#pragma once

#include <Quenlor/QnFileName.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
inline QnFileName PathOf(const Utf8String& utf8)
{
    QnFileName path;
    path.SetNameUtf8(utf8.c_str());
    return path;
}

/// The one spelling that all spellings of a path have in common.
inline WString FixedPathOf(const QnFileName& path)
{
    WString fixed;
    QnFileName::FixPathName(fixed, path.GetName());
    return fixed;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
