#include <Quenlor/WString.h>

#include "posix/CaseFolding.h"

namespace Quenlor
{
WString WString::ToUpperCase() const
{
    std::wstring upper = m_text;
    for (wchar_t& unit : upper)
        unit = static_cast<wchar_t>(Posix::ToUpper(static_cast<char32_t>(unit)));
    return upper;
}
} // namespace Quenlor
