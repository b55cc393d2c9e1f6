#include <Platform/Win32.h>
#include <Quenlor/WString.h>

namespace Quenlor
{
WString WString::ToUpperCase() const
{
    std::wstring upper = m_text;
    // Without linguistic rules every unit has one capital, so the length stays and source and result may be one buffer.
    const int length = static_cast<int>(upper.length());
    if (length != 0)
        ::LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, upper.data(), length, upper.data(), length, nullptr,
                        nullptr, 0);
    return upper;
}
} // namespace Quenlor
