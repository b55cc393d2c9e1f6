// Linked against the shared libraries as an application is: tries what passes between them and a program. Everything
// else is tested on the static form.

#include <RegistryHelper.h> // first, and without <windows.h>: it brings its own roots

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <CoreUtilities.h>
#include <IniReader.h>
#include <Logger.h>
#include <Quenlor/QnFileName.h>
#include <gmock/gmock.h>

#include "support/Files.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::NativeLogging;
using Quenlor::QnFileName;
using Quenlor::Utf8String;

const std::filesystem::path File =
    std::filesystem::temp_directory_path() / ("Shared Library " + std::to_string(std::random_device{}()));

TEST(SharedLibrary, HasTheSystemsRoots)
{
    EXPECT_EQ(RegistryHelper::GetIntValue(HKEY_CURRENT_USER, "No Such Key", "Value", 7), 7);
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(HKEY_CLASSES_ROOT), INT32_MIN);
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(HKEY_LOCAL_MACHINE), INT32_MIN + 2);
}

TEST(SharedLibrary, SharesExceptionsMemoryAndTextsOfEveryType)
{
    std::string text = "abc";
    EXPECT_THAT([&] { RightOf(text, 3); }, ::testing::ThrowsMessage<std::out_of_range>("invalid string position"));

    WriteFile(File, "[Main]\nSize=4\nLong=" + std::string(1000, 'x'));
    const Utf8String path = QnFileName{File.wstring()}.GetNameUtf8();
    const ILogger* const logger = LoggingManager::GetLogger(path);
    const auto take = [logger](const auto& name)
    {
        IniReader reader;
        EXPECT_TRUE(reader.LoadFile(name));
        std::vector<IniKeyValue> pairs;
        EXPECT_EQ(reader.GetKeyValuePairListBySection("Main", pairs), 2);
        EXPECT_EQ(pairs[1].Value, std::string(1000, 'x'));
        EXPECT_EQ(LoggingManager::GetLogger(name), logger);
    };
    take(path);
    take(path.c_str());
    take(path.ToStdString());
    take(QnFileName{path}.GetName());
    EXPECT_TRUE(remove(ToNativePath(path)));
}
} // namespace
