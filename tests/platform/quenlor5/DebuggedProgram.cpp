// Stopped by a debugger in Look, where its arguments are shown.
#include <Quenlor/QnFileName.h>

namespace
{
[[gnu::noinline]] int Look(const Quenlor::Utf8String& text, const Quenlor::WString& wide,
                           const Quenlor::QnFileName& path)
{
    return static_cast<int>(text.length() + wide.length()) + (*path.GetName() != L'/');
}
} // namespace

int main()
{
    return Look("Tr\u00E4ger", L"wide", Quenlor::QnFileName{Quenlor::Utf8String{"/a/path"}}) == 0;
}
