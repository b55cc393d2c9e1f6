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
using namespace StandIn::Registry;
using enum QuenlorStatus;

namespace
{
void CheckBytes(std::string_view bytes)
{
    WString wide;
    const bool isValid = QnStringUtilities::Utf8ToWChar(wide, bytes.data(), bytes.size()) == Success;
    Check(isValid == utf8::is_valid(bytes.begin(), bytes.end()));
    Check(wide == WString{Posix::WideOf(bytes)});

    Utf8String back;
    Check(QnStringUtilities::WCharToUtf8(back, wide.c_str(), wide.length()) == Success);
    Check(back == Posix::Utf8Of({wide.c_str(), wide.length()}));
    Check(isValid == (back == bytes));

    Check(FromUtf16Le(ToUtf16Le(bytes)) == bytes);
    Check(Utf16Length(bytes) * 2 == ToUtf16Le(bytes).size());
}

void CheckUnits(const std::wstring& units)
{
    Utf8String utf8;
    WString back;
    const bool isValid = QnStringUtilities::WCharToUtf8(utf8, units.data(), units.size()) == Success;
    Check(QnStringUtilities::Utf8ToWChar(back, utf8.data(), utf8.length()) == Success);
    Check(back.length() == units.size());
    Check(isValid == (back == WString{units}));
    Check(back.ContainsI(back.ToUpperCase()) && back.ToUpperCase().length() == back.length());
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CheckBytes(TextOf(data, size));
    std::wstring units(size / sizeof(wchar_t), L'\0');
    std::memcpy(units.data(), data, units.size() * sizeof(wchar_t));
    CheckUnits(units);
    return 0;
}
