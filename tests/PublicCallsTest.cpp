#include <RegistryHelper.h> // first, and without <windows.h>: it brings its own roots

#include <string>

#include <IniReader.h>
#include <Quenlor/NativeLogging.h>
#include <Quenlor/QnFileName.h>
#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::NativeLogging;
using Quenlor::QnFileName;
using Quenlor::Utf8String;

TEST(PublicCalls, TheRootsAreThoseOfTheSystem)
{
    EXPECT_EQ(RegistryHelper::GetIntValue(HKEY_CURRENT_USER, "No Such Key", "Value", 7), 7);
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(HKEY_CLASSES_ROOT), INT32_MIN);
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(HKEY_LOCAL_MACHINE), INT32_MIN + 2);
}

/// Calls `take` with one text in each of the types that a caller may hold it in.
template<class Take>
void WithEachType(const char* text, Take take)
{
    take(text);
    take(std::string{text});
    take(Utf8String{text});
    take(Quenlor::WString{text, true}.c_str());
}

TEST(PublicCalls, TextsAndPathsOfEveryTypeAreTaken)
{
    const TemporaryFolder folder;
    const QnFileName file{folder.Write("[Main]\nSize=4\n").wstring()};
    EXPECT_TRUE(exists(ToNativePath(file.GetNameUtf8())));
    WithEachType(file.GetNameUtf8().c_str(),
                 [](const auto& path)
                 {
        IniReader reader;
        EXPECT_TRUE(reader.LoadFile(path));
        EXPECT_TRUE(reader.LoadSection(path, "Main"));
        EXPECT_EQ(reader.GetIntegerValue("Main", "Size", 0), 4);
    });

    const ILogger* const logger = LoggingManager::GetLogger("Public.Calls");
    WithEachType("Public.Calls", [&](const auto& name) { EXPECT_EQ(LoggingManager::GetLogger(name), logger); });
    EXPECT_EQ(QnFileName{"a.ini"}.GetNameUtf8(), QnFileName{std::string{"a.ini"}}.GetNameUtf8());
}
} // namespace
