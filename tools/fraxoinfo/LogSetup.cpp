#include "LogSetup.h"

#include <algorithm>

#include "Colour.h"
#include "Report.h"
#include "core/Paths.h"
#include "logging/LoggerPlan.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::NativeLogging;
using Quenlor::QnFileName;

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

std::string Target(const AppenderSettings& appender, const QnFileName& file)
{
    // Values of environment variables may be private, and reports are sent away.
    const bool isPrivate = appender.path.find("${env:") != std::string::npos;
    const std::string path = isPrivate ? appender.path : NativeName(file);
    switch (appender.type)
    {
    case AppenderType::Console:
        return appender.toStandardOutput ? "standard output" : "standard error";
    case AppenderType::File:
        return path;
    case AppenderType::RollingFile:
        return path + ", " + std::to_string(appender.maxSize) + " bytes, and " + std::to_string(appender.count) +
               " older ones";
    case AppenderType::Debugger:
        return "the debugger";
    case AppenderType::Null:
        break;
    }
    return "nowhere";
}

std::vector<std::string> Describe(const Configuration& configuration, const LoggerPlan& plan)
{
    std::vector<std::string> lines{Row("Level", std::string{NameOf(plan.level)})};
    for (const PlannedAppender& planned : plan.appenders)
    {
        const AppenderSettings& appender = configuration.appenders[planned.position];
        std::string line = "\"" + appender.name + "\" to " + Target(appender, planned.file);
        if (appender.threshold != LogLevel::Trace)
            line += ", from level " + std::string{NameOf(appender.threshold)};
        lines.push_back(Row("Appender", line));
    }
    return lines;
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

LogSetup ExamineLog(const QnFileName& executable)
{
    LogSetup setup{.choice = ChooseLogConfiguration(executable), .lines = {}, .faults = {}};
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
    setup.lines = Describe(configuration, PlanLogger(configuration, variables, faults));
    for (const Fault& fault : faults)
    {
        if (const std::string line = FormatFault(file, fault);
            std::ranges::find(setup.faults, line) == setup.faults.end())
            setup.faults.push_back(line);
    }
    return setup;
}

std::string FormatLogSetup(const LogSetup& setup)
{
    const LogConfigurationChoice& choice = setup.choice;
    const std::string reason = choice.isBesideExecutable
                                   ? "it lies beside the executable, and wins over " + Text(choice.inProgramData)
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
