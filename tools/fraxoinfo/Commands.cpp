#include "Commands.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "CoreUtilities.h"
#include "Diff.h"
#include "Json.h"
#include "System.h"
#include "Terminal.h"
#include "VersionConfig.h"
#include "Watch.h"

namespace FraxoInfo
{
namespace
{
constexpr int Success = 0;
constexpr int Attention = 1;
constexpr int CannotDo = 2;

constexpr char Name[] = "fraxoinfo";
constexpr char Purpose[] = "print what the shared utilities answer on this machine, and where it comes from";

/// What the help ends with, and the manual page as well.
constexpr struct
{
    const char* title;
    const char* text;
} HelpSections[] = {
    {"DESCRIPTION",
     "Without a command: every answer, grouped by class, or the bare answer of one OPERATION for scripts. An "
     "operation\n"
     "is named with or without its class. No file of the product is created or changed without --provision. As in any\n"
     "application, a number that an earlier release stored as text becomes a number when it is read, and the shell's\n"
     "folder for this user is made if it is missing. What depends on the executable's folder or version is answered "
     "for\n"
     "fraxoinfo itself: copy it beside a program to see what that program sees.\n"},
    {"EXIT STATUS", "0  every operation answered, nothing needs attention, nothing differs\n"
                    "1  an operation failed, something needs attention, or there are differences\n"
                    "2  wrong use, a file that cannot be read, or output that cannot be written\n"},
    {"ENVIRONMENT",
     "The variables that the library reads decide the answers; `why` names those that were asked. NO_COLOR, not "
     "empty:\n"
     "no colours on a terminal. On Linux QUENLOR_REGISTRY_DIR names the folder of both registry files (otherwise\n"
     "/var/lib/quenlor/registry and ~/.config/quenlor/registry), and PROGRAMDATA and LOCALAPPDATA name the folders "
     "for\n"
     "data of the machine and of the user (otherwise /usr/share and ~/.local/share).\n"},
    {"EXAMPLES", "fraxoinfo GetFRAXOProRoot\n"
                 "fraxoinfo why GetCurrentLanguage\n"
                 "fraxoinfo log Quenlor.Fraxo.Editor.exe\n"
                 "fraxoinfo report case.html\n"
                 "fraxoinfo diff here.json there.html differences.html\n"},
};

void Print(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

/// The message of a command that cannot do its work.
using Refusal = std::runtime_error;

struct Arguments
{
    bool asJson = false;
    bool provide = false;
    bool withPersonalData = false;
    bool force = false;
    std::string operation;
    std::vector<std::string> operations;
    std::string file;
    std::string otherFile;
    std::string output;
    std::string section;
};

template<class Data>
void Show(const Arguments& arguments, const Data& data)
{
    Print(arguments.asJson ? ToJson(data) : Format(data));
}

std::vector<std::string> OperationNames()
{
    std::vector<std::string> names;
    for (const Operation& operation : Catalogue())
        names.emplace_back(operation.name);
    return names;
}

const Operation& OperationOf(const std::string& name)
{
    if (const Operation* const operation = Find(name))
        return *operation;
    std::string message = "there is no operation '" + Printable(name) + "'.";
    const auto nearest = NearestNames(name.substr(0, name.find('(')), OperationNames());
    message += nearest.empty() ? "\nRun fraxoinfo without arguments to see them all." : "\nDid you mean:";
    for (const std::string& suggestion : nearest)
        message += "\n  " + suggestion;
    if (name.find('(') != std::string::npos)
        message += "\nAn operation with an argument can be asked only with the one that is listed.";
    throw Refusal{message};
}

int StatusOf(const std::vector<Answer>& answers)
{
    return std::ranges::all_of(answers, &std::string::empty, &Answer::failure) ? Success : Attention;
}

int ShowOne(const Arguments& arguments)
{
    const std::vector<Answer> answers{AskFor(OperationOf(arguments.operation), arguments.provide)};
    const Answer& answer = answers.front();
    if (arguments.asJson)
        Print(ToJson(answers));
    else if (answer.failure.empty()) // scripts get the bytes as they are
        Print((IsOutputTerminal() ? Printable(ToText(answer.value), "\n") : ToText(answer.value)) + "\n");
    else
        std::fprintf(stderr, "%s: %s failed: %s\n", Name, answer.operation->name.data(),
                     Printable(answer.failure).c_str());
    return StatusOf(answers);
}

int ShowEverything(const Arguments& arguments)
{
    const std::vector<Answer> answers = AskForEverything(arguments.provide);
    Show(arguments, answers);
    return StatusOf(answers);
}

int ShowWhy(const Arguments& arguments)
{
    const Answer answer = AskFor(OperationOf(arguments.operation), false);
    Print(arguments.asJson ? ToJson(answer) : Explain(answer));
    return answer.failure.empty() ? Success : Attention;
}

int ShowFeatures(const Arguments& arguments)
{
    const auto features = ReadFeatures();
    Show(arguments, features);
    return std::ranges::all_of(features, &std::string::empty, &Feature::failure) ? Success : Attention;
}

int ShowApplications(const Arguments& arguments)
{
    Show(arguments, FindApplications());
    return Success;
}

int ShowLog(const Arguments& arguments, bool isGiven)
{
    Quenlor::QnFileName executable = ThisProgram();
    std::error_code error;
    if (isGiven && !std::filesystem::is_regular_file(arguments.file, error))
        throw Refusal{"there is no program '" + Printable(arguments.file) + "': name the file of an executable"};
    if (isGiven)
        executable.SetName(std::filesystem::absolute(arguments.file).lexically_normal().wstring().c_str());
    const LogSetup setup = ExamineLog(executable, true);
    Show(arguments, setup);
    return setup.exists && setup.faults.empty() && setup.notWritable.empty() && !setup.isSilent ? Success : Attention;
}

int ShowFindings(const Arguments& arguments)
{
    const auto findings = Examine();
    Show(arguments, findings);
    return findings.empty() ? Success : Attention;
}

int ShowIni(const Arguments& arguments, bool isSectionGiven)
{
    std::vector<IniLine> lines = ReadIniLines(arguments.file);
    if (isSectionGiven)
        std::erase_if(lines, [&](const IniLine& line) { return line.section != arguments.section; });
    if (isSectionGiven && lines.empty())
        throw Refusal{"there is no section '" + Printable(arguments.section) + "' in that file"};
    Show(arguments, lines);
    return std::ranges::all_of(lines, &std::string::empty, &IniLine::surprise) ? Success : Attention;
}

int ShowNames(const Arguments& arguments)
{
    const auto names = OperationNames();
    if (arguments.asJson)
        Print(ToJson(names));
    for (const std::string& name : arguments.asJson ? std::vector<std::string>{} : names)
        Print(name + "\n");
    return Success;
}

bool IsPage(const std::string& file)
{
    return file.ends_with(".html") || file.ends_with(".htm");
}

/// "-" is standard output.
void WriteOutput(const Arguments& arguments, const std::string& file, const std::string& text)
{
    if (file == "-")
        return Print(text);
    std::error_code error;
    const bool exists = std::filesystem::exists(file, error);
    if (exists && !(arguments.force && std::filesystem::is_regular_file(file, error)))
        throw Refusal{Printable(file) + " exists already: name another file" +
                      (arguments.force ? "" : ", or add --force")};
    if (exists) // the old one may be readable by others
        std::filesystem::remove(file, error);
    std::ofstream stream{file, std::ios::binary};
    stream << text << std::flush;
    if (!stream)
        throw Refusal{"cannot write " + Printable(file) + ": name a file in a folder that you may write to"};
    std::printf("Wrote %s.\n", Printable(file).c_str());
}

int WriteReport(const Arguments& arguments)
{
    if (arguments.withPersonalData)
        KeepFilesPrivate();
    const std::string report = MakeReport(arguments.withPersonalData);
    WriteOutput(arguments, arguments.file, IsPage(arguments.file) ? MakePage(report) : report);
    if (!arguments.withPersonalData && arguments.file != "-")
        Print(
            "What names the user, the account or the project is left out, and so are stored texts of no known form.\n");
    return Success;
}

int ShowDifferences(const Arguments& arguments)
{
    const auto compared = Compare(arguments.file, arguments.otherFile);
    const bool isSame = std::ranges::all_of(compared, [](const Compared& row) { return row.first == row.second; });
    if (!arguments.output.empty())
        WriteOutput(arguments, arguments.output, IsPage(arguments.output) ? MakePage(compared) : ToJson(compared));
    else
        Print(arguments.asJson ? ToJson(compared) : isSame ? "No differences.\n" : Format(compared));
    return isSame ? Success : Attention;
}

int WatchAnswers(const Arguments& arguments)
{
    std::vector<const Operation*> operations;
    for (const std::string& name : arguments.operations.empty() ? OperationNames() : arguments.operations)
        operations.push_back(&OperationOf(name));
    Watch(operations);
    return Success;
}

/// Text for the manual page's format.
std::string InManual(std::string_view text)
{
    std::string manual;
    for (const char character : text)
        manual += character == '-' ? "\\-" : character == '\\' ? "\\e" : std::string{character};
    return manual;
}

void AddToManual(std::string& page, const CLI::App& command)
{
    for (const CLI::Option* const option : command.get_options())
    {
        const bool isShared = option->get_name() == "--help" || option->get_name() == "--json"; // as of the program
        if (option->nonpositional() && !(isShared && command.get_parent()))
            page += ".TP\n.B " + InManual(option->get_name(false, true)) + "\n" + InManual(option->get_description()) +
                    "\n";
    }
}

std::string ArgumentsOf(const CLI::App& command)
{
    std::string text;
    for (const CLI::Option* const option : command.get_options())
    {
        if (option->get_positional())
            text += option->get_required() ? " " + option->get_name(true) : " [" + option->get_name(true) + "]";
    }
    return text;
}

int PrintManual(const CLI::App& app)
{
    const std::string release =
        Quenlor::Fraxo::SharedUtilities::Native::VersionConfig::GetReleaseNumber().ToStdString();
    std::string page = R"(.TH FRAXOINFO 1 "" "Release )" + release +
                       "\" \"FRAXO.Pro tools\"\n.SH NAME\nfraxoinfo \\- " + Purpose +
                       "\n.SH SYNOPSIS\n.B fraxoinfo\n[OPTIONS] [OPERATION]\n.br\n.B fraxoinfo\nCOMMAND [OPTIONS]\n";
    page += ".SH COMMANDS\n";
    std::string options = ".SH OPTIONS\n";
    AddToManual(options, app);
    for (const CLI::App* const command : app.get_subcommands([](const CLI::App* c) { return !c->get_group().empty(); }))
    {
        page += ".TP\n.B " + command->get_name() + ArgumentsOf(*command) + "\n" + InManual(command->get_description()) +
                "\n";
        page += ".RS\n";
        AddToManual(page, *command);
        page += ".RE\n";
    }
    page += options;
    for (const auto& [title, text] : HelpSections)
        page += ".SH " + std::string{title} + "\n.nf\n" + InManual(text) + ".fi\n";
    Print(page + ".SH SEE ALSO\n.BR fraxoreg (1)\n");
    return Success;
}

/// @param status what the program ends with; set by the command that was given
void AddCommands(CLI::App& app, Arguments& arguments, int& status)
{
    const auto add = [&](const char* name, const char* description, std::function<int()> run)
    {
        CLI::App* const command = app.add_subcommand(name, description);
        command->callback([&status, run = std::move(run)] { status = run(); });
        return command;
    };
    const auto addJson = [&](CLI::App* command)
    {
        command->add_flag("--json", arguments.asJson, "Print JSON");
        return command;
    };
    addJson(add("why", "Show what led to an answer", [&] { return ShowWhy(arguments); }))
        ->add_option("OPERATION", arguments.operation, "The operation, with or without its class")
        ->required();
    addJson(
        add("features", "List the feature switches and what decided each", [&] { return ShowFeatures(arguments); }));
    addJson(add("applications", "Show which other products were found, and why",
                [&] { return ShowApplications(arguments); }));

    CLI::App* const log = app.add_subcommand("log", "Show how a program's log is set up, and check its configuration");
    const CLI::Option* const program = addJson(log)->add_option(
        "EXECUTABLE", arguments.file, "The program's executable; fraxoinfo's own if not given");
    log->callback([&arguments, &status, program] { status = ShowLog(arguments, program->count() != 0); });

    addJson(add("doctor", "Examine the installation: what is wrong, and what to do",
                [&] { return ShowFindings(arguments); }));

    CLI::App* const report = add("report", "Write everything that a support case needs into one file",
                                 [&] { return WriteReport(arguments); });
    report
        ->add_option("FILE", arguments.file, "The file to write: JSON, or a page if it ends in .html; - for the output")
        ->required();
    report->add_flag("--personal", arguments.withPersonalData,
                     "Keep names, addresses and stored texts; the file is readable only by you");

    CLI::App* const diff =
        addJson(add("diff", "Show what differs between two reports", [&] { return ShowDifferences(arguments); }));
    diff->add_option("FIRST", arguments.file, "A file of report or --json")->required();
    diff->add_option("SECOND", arguments.otherFile, "Another")->required();
    diff->add_option("OUTPUT", arguments.output, "A file to write: a page if it ends in .html");
    for (CLI::App* const command : {report, diff})
        command->add_flag("--force", arguments.force, "Replace a file that exists");

    CLI::App* const ini = app.add_subcommand("ini", "Show what the library's reader sees in an INI file");
    addJson(ini)->add_option("FILE", arguments.file, "The file")->required();
    const CLI::Option* const section = ini->add_option("SECTION", arguments.section, "Only this section");
    ini->callback([&arguments, &status, section] { status = ShowIni(arguments, section->count() != 0); });

    add("watch", "Print each answer that changes, until interrupted",
        [&] {
        return WatchAnswers(arguments);
    })->add_option("OPERATION", arguments.operations, "The operations; all if none is given");
    addJson(add("names", "List the names of all operations", [&] { return ShowNames(arguments); }));
    add("manual", "", [&app] { return PrintManual(app); })->group(""); // what the build makes the manual page of
    app.require_subcommand(0, 1);
}

/// A switch that the command given has no use for.
void CheckSwitches(const CLI::App& app, const Arguments& arguments)
{
    for (const CLI::App* const command : app.get_subcommands())
    {
        if (arguments.provide || app.count("OPERATION") != 0)
            throw Refusal{"'" + command->get_name() + "' takes neither --provision nor an operation before it"};
        if (arguments.asJson && !command->get_option_no_throw("--json"))
            throw Refusal{"'" + command->get_name() + "' has no --json"};
    }
}

int RunCommand(int argc, const char* const* argv)
{
    CLI::App app{std::string{Name} + ": " + Purpose};
    const auto release = Quenlor::Fraxo::SharedUtilities::Native::VersionConfig::GetReleaseNumber();
    app.set_version_flag("--version", std::string{"fraxoinfo, release "} + release.c_str());
    Arguments arguments;
    int status = Success;
    app.add_option("OPERATION", arguments.operation, "The operation to ask for, with or without its class");
    app.add_flag("--json", arguments.asJson, "Print JSON");
    app.add_flag("--provision", arguments.provide, "Make the user's missing files from the installed defaults");
    AddCommands(app, arguments, status);
    app.parse_complete_callback([&] { CheckSwitches(app, arguments); });
    std::string footer;
    for (const auto& [title, text] : HelpSections)
        footer += std::string{title} + "\n" + text + "\n";
    app.footer(footer); // after the commands, which would take it over
    app.failure_message([](const CLI::App* command, const CLI::Error& error)
                        { return "fraxoinfo: " + Printable(CLI::FailureMessage::simple(command, error), "\n"); });
    try
    {
        app.parse(argc, argv); // runs the command, if there is one
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error) == Success ? Success : CannotDo;
    }
    if (!app.get_subcommands().empty())
        return status;
    // An empty name is a name as well: a script has lost one.
    return app.count("OPERATION") != 0 ? ShowOne(arguments) : ShowEverything(arguments);
}
} // namespace

int Run(int argc, const char* const* argv)
{
    int status = CannotDo;
    UseColours(GetEnvironmentVariableValue("NO_COLOR").empty() && IsOutputTerminal());
    try
    {
        status = RunCommand(argc, argv);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "%s: %s\n", Name, error.what());
    }
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    std::perror("fraxoinfo: cannot write the output");
    return CannotDo;
}
} // namespace FraxoInfo
