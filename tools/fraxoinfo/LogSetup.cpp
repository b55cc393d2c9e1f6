#include "LogSetup.h"

#include <algorithm>

#include "Doctor.h"
#include "Terminal.h"
#include "common/StoredText.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::NativeLogging;
using Quenlor::QnFileName;
using Tools::Printable;

namespace FraxoInfo
{
namespace
{
std::string Text(const QnFileName& path)
{
    return path.GetNameUtf8().ToStdString();
}

std::string Row(const char* label, std::string_view text)
{
    return fmt::format("{:<15}{}", label, text);
}

/// Values of environment variables may be private: reports have only the variables' names.
std::string FileName(const AppenderSettings& appender, const QnFileName& file, bool expand)
{
    return expand || appender.path.find("${env:") == std::string::npos ? NativeName(file) : appender.path;
}

std::string Target(const AppenderSettings& appender, const std::string& file)
{
    switch (appender.type)
    {
    case AppenderType::Console:
        return appender.toStandardOutput ? "standard output" : "standard error";
    case AppenderType::File:
        return file;
    case AppenderType::RollingFile:
        return fmt::format("{}, {} bytes, and {} older ones", file, appender.maxSize, appender.count);
    case AppenderType::Debugger:
        return "the debugger";
    case AppenderType::Null:
        break;
    }
    return "nowhere";
}

void Describe(LogSetup& setup, const Configuration& configuration, const LoggerPlan& plan, bool expand)
{
    setup.lines.push_back(Row("Level", NameOf(plan.level)));
    setup.isSilent = true;
    for (const PlannedAppender& planned : plan.appenders)
    {
        const AppenderSettings& appender = configuration.appenders[planned.position];
        const std::string file = FileName(appender, planned.file, expand);
        const std::string from =
            appender.threshold == LogLevel::Trace ? "" : fmt::format(", from level {}", NameOf(appender.threshold));
        setup.lines.push_back(
            Row("Appender", fmt::format(R"("{}" to {}{})", appender.name, Target(appender, file), from)));
        const bool isFile = appender.type == AppenderType::File || appender.type == AppenderType::RollingFile;
        if (isFile && !CanWriteOrMake(planned.file.ToNativePath()))
            setup.notWritable.push_back(file);
        const LogLevel lowest = std::max(appender.threshold, plan.level);
        setup.isSilent = setup.isSilent && (appender.type == AppenderType::Null || lowest == LogLevel::Off);
    }
}

Variables VariablesFor(const Quenlor::WString& logger)
{
    Variables variables{
        .logger = Text(QnFileName{logger}), .process = "${pid}", .named = {}}; // each process has its own number
    for (const LogFolderVariable& variable : LogFolderVariables)
        variables.named[variable.name] = variable.folder;
    return variables;
}
} // namespace

QnFileName ThisProgram()
{
    QnFileName executable;
    Quenlor::QnGetModuleFileName(executable, nullptr);
    return executable;
}

LogSetup ExamineLog(const QnFileName& executable, bool expand)
{
    LogSetup setup{.choice = ChooseLogConfiguration(executable), .lines = {}, .faults = {}, .notWritable = {}};
    const QnFileName& file = setup.choice.File();
    setup.exists = Exists(file);

    const Variables variables = VariablesFor(setup.choice.loggerName);
    std::vector<Fault> faults;
    const Configuration configuration = ReadConfiguration(file, faults).value_or(DefaultConfiguration());
    for (const AppenderSettings& appender : configuration.appenders) // including those that this logger does not use
        FileOf(appender, configuration, variables, faults);
    Describe(setup, configuration, PlanLogger(configuration, variables, faults), expand);
    for (const Fault& fault : faults) // some are found in both ways
    {
        const std::string line = FormatFault(file, fault);
        if (std::ranges::find(setup.faults, line) == setup.faults.end())
            setup.faults.push_back(line);
    }
    return setup;
}

std::string Format(const LogSetup& setup)
{
    const LogConfigurationChoice& choice = setup.choice;
    const std::string reason = choice.isBesideExecutable
                                   ? "it is beside the executable, and wins over " + Text(choice.inProgramData)
                                   : "this is missing beside the executable: " + Text(choice.besideExecutable);
    std::string text = Row("Logger", Printable(Text(QnFileName{choice.loggerName}))) + "\n";
    text += fmt::format("{}  {}\n", Row("Configuration", Printable(Text(choice.File()))),
                        setup.exists ? "[exists]" : Coloured("[missing]", Colour::Warning));
    text += Row("Chosen because", Printable(reason)) + "\n";
    for (const std::string& line : setup.lines)
        text += Printable(line) + "\n";
    for (const std::string& fault : setup.faults)
        text += fmt::format("{} {}\n", Coloured("!", Colour::Bad), Printable(fault));
    return text;
}
} // namespace FraxoInfo
