#include <Quenlor/WString.h>

#include <Quenlor/QnStringUtilities.h>

namespace Quenlor
{
WString::WString(const char* utf8, [[maybe_unused]] bool flag)
{
    QnStringUtilities::Utf8ToWChar(*this, utf8);
}

bool WString::ContainsI(const WString& part) const
{
    return ToUpperCase().m_text.find(part.ToUpperCase().m_text) != std::wstring::npos;
}
} // namespace Quenlor
