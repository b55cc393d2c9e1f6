#include "Logger.h"

#include <atomic>
#include <new>
#include <stdexcept>

#include "DirectoryConfig.h"
#include "core/Paths.h"
#include "logging/LogConfigurationChoice.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
using namespace NativeLogging;

namespace
{
constexpr char FileName[] = "FraxoPro.log.xml";

std::atomic<ILogger*> theLogger{nullptr};
} // namespace

LogConfigurationChoice ChooseLogConfiguration(const QnFileName& executable)
{
    LogConfigurationChoice choice;
    const QnFileName folder{QnFileName::GetDirectoryName(executable.GetName())};
    choice.besideExecutable = InFolder(folder.GetNameUtf8(), FileName);
    choice.isBesideExecutable = Exists(choice.besideExecutable);
    choice.loggerName = QnFileName::GetFileNameWithoutExtension(executable.GetName());
    try
    {
        choice.inProgramData = InFolder(DirectoryConfig::GetProgramDataDirectory(), FileName);
    }
    catch (const std::runtime_error&) // a program starts even without its log
    {
    }
    return choice;
}

void Logger::Initialize()
try
{
    if (theLogger.load(std::memory_order_acquire))
        return;
    QnFileName executable;
    QnGetModuleFileName(executable, nullptr);
    const LogConfigurationChoice choice = ChooseLogConfiguration(executable);

    for (const LogFolderVariable& variable : LogFolderVariables)
        LoggingConfig::DefineVariable(variable.name, variable.folder);
    LoggingConfig::SetOption(L"CONFIG_FILE", choice.File().GetName()); // even when the file does not exist
    LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile);
    theLogger.store(LoggingManager::GetLogger(choice.loggerName), std::memory_order_release);
}
catch (const std::bad_alloc&) // the next call tries again
{
}

ILogger* Logger::Get()
{
    if (!theLogger.load(std::memory_order_acquire))
        Initialize();
    return theLogger.load(std::memory_order_acquire);
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
