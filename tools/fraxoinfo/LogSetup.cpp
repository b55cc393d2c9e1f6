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

std::string Row(std::string label, const std::string& text)
{
    label.resize(15, ' ');
    return label + text;
}

/// Values of environment variables may be private, and reports are sent away.
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
        return file + ", " + std::to_string(appender.maxSize) + " bytes, and " + std::to_string(appender.count) +
               " older ones";
    case AppenderType::Debugger:
        return "the debugger";
    case AppenderType::Null:
        break;
    }
    return "nowhere";
}

void Describe(LogSetup& setup, const Configuration& configuration, const LoggerPlan& plan, bool expand)
{
    setup.lines.push_back(Row("Level", std::string{NameOf(plan.level)}));
    setup.isSilent = true;
    for (const PlannedAppender& planned : plan.appenders)
    {
        const AppenderSettings& appender = configuration.appenders[planned.position];
        const std::string file = FileName(appender, planned.file, expand);
        std::string line = "\"" + appender.name + "\" to " + Target(appender, file);
        if (appender.threshold != LogLevel::Trace)
            line += ", from level " + std::string{NameOf(appender.threshold)};
        setup.lines.push_back(Row("Appender", line));
        const bool isFile = appender.type == AppenderType::File || appender.type == AppenderType::RollingFile;
        if (isFile && !CanWriteOrMake(planned.file.ToNativePath()))
            setup.notWritable.push_back(file);
        const LogLevel lowest = std::max(appender.threshold, plan.level);
        setup.isSilent = setup.isSilent && (appender.type == AppenderType::Null || lowest == LogLevel::Off);
    }
}

Variables VariablesFor(const Quenlor::WString& logger)
{
    QnFileName name;
    name.SetName(logger.c_str());
    Variables variables{.logger = Text(name), .process = "${pid}", .named = {}}; // each process has its own number
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
    for (const AppenderSettings& appender : configuration.appenders) // also those that this logger does not use
        FileOf(appender, configuration, variables, faults);
    for (const Fault& fault : faults)
        setup.faults.push_back(FormatFault(file, fault));

    faults.clear();
    Describe(setup, configuration, PlanLogger(configuration, variables, faults), expand);
    for (const Fault& fault : faults)
    {
        if (const std::string line = FormatFault(file, fault);
            std::ranges::find(setup.faults, line) == setup.faults.end())
            setup.faults.push_back(line);
    }
    return setup;
}

std::string Format(const LogSetup& setup)
{
    const LogConfigurationChoice& choice = setup.choice;
    const std::string reason = choice.isBesideExecutable
                                   ? "it is beside the executable, and wins over " + Text(choice.inProgramData)
                                   : "there is none beside the executable, " + Text(choice.besideExecutable);
    QnFileName name;
    name.SetName(choice.loggerName.c_str());
    std::string text = Row("Logger", Printable(Text(name))) + "\n";
    text += Row("Configuration", Printable(Text(choice.File()))) +
            (setup.exists ? "  [exists]" : "  " + Coloured("[missing]", Colour::Warning)) + "\n";
    text += Row("Chosen because", Printable(reason)) + "\n";
    for (const std::string& line : setup.lines)
        text += Printable(line) + "\n";
    for (const std::string& fault : setup.faults)
        text += Coloured("!", Colour::Bad) + " " + Printable(fault) + "\n";
    return text;
}
} // namespace FraxoInfo
