// Any bytes, taken for UTF-8, for wide text and for a value of the registry: well-formed text comes back as it was,
// malformed text comes back repaired, and separately written converters agree.

#include <Quenlor/QnStringUtilities.h>

#include <cstring>
#include <string>
#include <utf8.h>

#include "Fuzz.h"
#include "posix/WideText.h"
#include "registry/RegistryText.h"

using namespace Quenlor;

namespace
{
std::wstring Text(const WString& text)
{
    return {text.c_str(), text.length()};
}

void CheckBytes(std::string_view bytes)
{
    WString wide;
    const bool isValid = QnStringUtilities::Utf8ToWChar(wide, bytes.data(), bytes.size()) == QuenlorStatus::Success;
    Check(isValid == utf8::is_valid(bytes.begin(), bytes.end()));
    Check(Text(wide) == Posix::WideOf(bytes));

    Utf8String back;
    Check(QnStringUtilities::WCharToUtf8(back, wide.c_str(), wide.length()) == QuenlorStatus::Success);
    Check(back == Posix::Utf8Of(Text(wide)));
    Check(isValid == (back == bytes));

    const std::string terminated{bytes.substr(0, bytes.find('\0'))};
    QnStringUtilities::Utf8ToWChar(wide, terminated.c_str());
    std::wstring buffer(8, L'#');
    QnStringUtilities::Utf8ToWChar(buffer.data(), terminated.c_str(), 7);
    Check(Text(wide).substr(0, 6) == buffer.c_str() && buffer[7] == L'#');

    Check(StandIn::Registry::FromUtf16Le(StandIn::Registry::ToUtf16Le(bytes)) == bytes);
    Check(StandIn::Registry::Utf16Length(bytes) * 2 == StandIn::Registry::ToUtf16Le(bytes).size());
}

void CheckUnits(std::string_view bytes)
{
    std::wstring units(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(units.data(), bytes.data(), units.size() * sizeof(wchar_t));
    Utf8String utf8;
    const bool isValid = QnStringUtilities::WCharToUtf8(utf8, units.data(), units.size()) == QuenlorStatus::Success;
    WString back;
    Check(QnStringUtilities::Utf8ToWChar(back, utf8.data(), utf8.length()) == QuenlorStatus::Success);
    Check(Text(back).size() == units.size());
    Check(isValid == (Text(back) == units));

    const WString text{units};
    Check(text.ContainsI(text.ToUpperCase()) && text.ToUpperCase().length() == text.length());
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CheckBytes(TextOf(data, size));
    CheckUnits(TextOf(data, size));
    return 0;
}
