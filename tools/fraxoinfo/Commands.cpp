#include "Commands.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "CoreUtilities.h"
#include "Json.h"
#include "System.h"
#include "Terminal.h"
#include "VersionConfig.h"
#include "Watch.h"

using Quenlor::Fraxo::SharedUtilities::Native::VersionConfig;

namespace FraxoInfo
{
namespace
{
constexpr int Success = 0;
constexpr int Attention = 1;
constexpr int CannotDo = 2;

constexpr char Name[] = "fraxoinfo";
constexpr char Purpose[] = "print what the shared utilities answer on this machine, and where it comes from";

/// What the help and the manual page end with.
constexpr char Footer[] = R"(DESCRIPTION:
Without a command: every answer, grouped by class, or the bare answer of one OPERATION for scripts. An operation
is named with or without its class. No file of the product is created or changed without --provision. As in any
application, a number that an earlier release stored as text becomes a number when it is read, and the shell's
folder for this user is made if it is missing. What depends on the executable's folder or version is answered for
fraxoinfo itself: copy it beside a program to see what that program sees.

EXIT STATUS:
  0  every operation answered, nothing needs attention, nothing differs
  1  an operation failed, something needs attention, or there are differences
  2  wrong use, a file that cannot be read, or output that cannot be written

ENVIRONMENT:
The variables that the library reads decide the answers; "why" names those that were asked. NO_COLOR, if not
empty: no colours on a terminal. On Linux QUENLOR_REGISTRY_DIR names the folder of both registry files (otherwise
/var/lib/quenlor/registry and ~/.config/quenlor/registry), and PROGRAMDATA and LOCALAPPDATA name the folders for
data of the machine and of the user (otherwise /usr/share and ~/.local/share).

EXAMPLES:
    fraxoinfo GetFRAXOProRoot
    fraxoinfo why GetCurrentLanguage
    fraxoinfo log Quenlor.Fraxo.Editor.exe
    fraxoinfo report case.html
    fraxoinfo diff here.json there.html differences.html
)";

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
    std::string file;
    std::string otherFile;
    std::string output;
    std::vector<std::string> names; ///< Those that may be missing. An empty one, which a script has lost, is not.
};

/// @param fault the text of an item that is empty when nothing is wrong with it
template<class Items, class Fault>
int Show(const Arguments& arguments, const Items& items, Fault fault)
{
    Print(arguments.asJson ? Dump(items) : Format(items));
    return std::ranges::all_of(items, &std::string::empty, fault) ? Success : Attention;
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
    std::string message = fmt::format("the operation '{}' is unknown.", Printable(name));
    const auto nearest = NearestNames(name.substr(0, name.find('(')), OperationNames());
    message += nearest.empty() ? "\nRun fraxoinfo without arguments to see them all." : "\nDid you mean:";
    for (const std::string& suggestion : nearest)
        message += "\n  " + suggestion;
    if (name.find('(') != std::string::npos)
        message += "\nAn operation with an argument can be asked only with the argument that is listed.";
    throw Refusal{message};
}

int ShowOne(const Arguments& arguments)
{
    const Answer answer = AskFor(OperationOf(arguments.operation), arguments.provide);
    if (arguments.asJson)
        Print(Dump(std::vector{answer}));
    else if (answer.failure.empty()) // scripts get the bytes as they are
        Print((IsOutputTerminal() ? Printable(ToText(answer.value), "\n") : ToText(answer.value)) + "\n");
    else
        fmt::print(stderr, "{}: {} failed: {}\n", Name, answer.operation->name, Printable(answer.failure));
    return answer.failure.empty() ? Success : Attention;
}

int ShowWhy(const Arguments& arguments)
{
    const Answer answer = AskFor(OperationOf(arguments.operation), false);
    Print(arguments.asJson ? Dump(WithSources({answer})) : Explain(answer));
    return answer.failure.empty() ? Success : Attention;
}

int ShowLog(const Arguments& arguments)
{
    Quenlor::QnFileName executable = ThisProgram();
    std::error_code error;
    for (const std::string& file : arguments.names)
    {
        if (!std::filesystem::is_regular_file(file, error))
            throw Refusal{fmt::format("the program '{}' does not exist: name an executable file", Printable(file))};
        executable.SetName(std::filesystem::absolute(file).lexically_normal().wstring().c_str());
    }
    const LogSetup setup = ExamineLog(executable, true);
    Print(arguments.asJson ? Dump(setup) : Format(setup));
    return setup.exists && setup.faults.empty() && setup.notWritable.empty() && !setup.isSilent ? Success : Attention;
}

int ShowIni(const Arguments& arguments)
{
    std::vector<IniLine> lines = ReadIniLines(arguments.file);
    for (const std::string& section : arguments.names)
    {
        std::erase_if(lines, [&](const IniLine& line) { return line.section != section; });
        if (lines.empty())
            throw Refusal{fmt::format("the file has no section '{}'", Printable(section))};
    }
    return Show(arguments, lines, &IniLine::surprise);
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
        throw Refusal{fmt::format("{} already exists: name another file{}", Printable(file),
                                  arguments.force ? "" : ", or add --force")};
    if (exists) // the old one may be readable by others
        std::filesystem::remove(file, error);
    std::ofstream stream{file, std::ios::binary};
    stream << text << std::flush;
    if (!stream)
        throw Refusal{fmt::format("cannot write {}: name a file in a folder that you may write to", Printable(file))};
    Print(fmt::format("Wrote {}.\n", Printable(file)));
}

int WriteReport(const Arguments& arguments)
{
    if (arguments.withPersonalData)
        KeepFilesPrivate();
    const std::string report = MakeReport(arguments.withPersonalData);
    WriteOutput(arguments, arguments.file, IsPage(arguments.file) ? MakePage(report) : report);
    if (!arguments.withPersonalData && arguments.file != "-")
        Print("Names of the user, the account and the project are left out, and so are unknown stored texts.\n");
    return Success;
}

int ShowDifferences(const Arguments& arguments)
{
    const auto compared = Compare(arguments.file, arguments.otherFile);
    auto different = compared;
    std::erase_if(different, [](const Compared& row) { return row.first == row.second; });
    if (arguments.output.empty())
        return Show(arguments, different, &Compared::name);
    WriteOutput(arguments, arguments.output,
                IsPage(arguments.output) ? MakePage(Dump({{"compared", compared}})) : Dump(different));
    return different.empty() ? Success : Attention;
}

int WatchAnswers(const Arguments& arguments)
{
    std::vector<const Operation*> operations;
    for (const std::string& name : arguments.names.empty() ? OperationNames() : arguments.names)
        operations.push_back(&OperationOf(name));
    Watch(operations);
    return Success;
}

/// @param status what the program ends with; set by the command that was given
void AddCommands(CLI::App& app, Arguments& arguments, int& status)
{
    const auto add = [&](const char* name, const char* description, int (*run)(const Arguments&), bool hasJson = true)
    {
        CLI::App* const command = app.add_subcommand(name, description);
        command->callback([&status, &arguments, run] { status = run(arguments); });
        command->excludes(app.get_option("OPERATION"))->excludes(app.get_option("--provision"));
        if (hasJson)
            command->add_flag("--json", arguments.asJson, "Print JSON");
        else
            command->excludes(app.get_option("--json"));
        return command;
    };
    add("why", "Show what led to an answer", ShowWhy)
        ->add_option("OPERATION", arguments.operation, "The operation, with or without its class")
        ->required();
    add("features", "List the feature switches and what decided each",
        [](const Arguments& given) { return Show(given, ReadFeatures(), &Feature::failure); });
    add("applications", "Show which other products were found, and why",
        [](const Arguments& given) { return Show(given, FindApplications(), &Application::Failure); });
    add("log", "Show how a program's log is set up, and check its configuration", ShowLog)
        ->add_option("EXECUTABLE", arguments.names, "The program's executable; fraxoinfo's own if not given")
        ->expected(0, 1);
    add("doctor", "Examine the installation: what is wrong, and what to do",
        [](const Arguments& given) { return Show(given, Examine(), &Finding::problem); });
    CLI::App* const report =
        add("report", "Write everything that a support case needs into one file", WriteReport, false);
    report
        ->add_option("FILE", arguments.file,
                     "The file to write: a page if it ends in .html, else JSON; - for the output")
        ->required();
    report->add_flag("--personal", arguments.withPersonalData,
                     "Keep names, addresses and stored texts; the file is readable only by you");
    CLI::App* const diff = add("diff", "Show what differs between two reports", ShowDifferences);
    diff->add_option("FIRST", arguments.file, "A file that report or --json has written")->required();
    diff->add_option("SECOND", arguments.otherFile, "Another")->required();
    diff->add_option("OUTPUT", arguments.output, "A file to write: a page if it ends in .html, else JSON");
    for (CLI::App* const command : {report, diff})
        command->add_flag("--force", arguments.force, "Replace a file that exists");
    CLI::App* const ini = add("ini", "Show what the library's reader sees in an INI file", ShowIni);
    ini->add_option("FILE", arguments.file, "The file")->required();
    ini->add_option("SECTION", arguments.names, "Only this section")->expected(0, 1);
    add("watch", "Print each answer that changes, until interrupted", WatchAnswers, false)
        ->add_option("OPERATION", arguments.names, "The operations; all if none is given");
    add("names", "List the names of all operations",
        [](const Arguments& given)
        {
        Print(given.asJson ? Dump(OperationNames()) : fmt::format("{}\n", fmt::join(OperationNames(), "\n")));
        return Success;
    });
    app.require_subcommand(0, 1);
}

int RunCommand(int argc, const char* const* argv)
{
    CLI::App app{std::string{Name} + ": " + Purpose, Name};
    app.get_formatter()->label("TEXT", "");
    app.get_formatter()->label("REQUIRED", "(required)");
    app.set_version_flag("--version", fmt::format("{}, release {}", Name, VersionConfig::GetReleaseNumber()));
    Arguments arguments;
    int status = Success;
    app.add_option("OPERATION", arguments.operation, "The operation to ask for, with or without its class");
    app.add_flag("--json", arguments.asJson, "Print JSON");
    app.add_flag("--provision", arguments.provide, "Make the user's missing files from the installed defaults");
    AddCommands(app, arguments, status);
    app.set_help_all_flag("--help-all", "Print this with the arguments of every command");
    app.footer(Footer); // after the commands, which would take it over
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
    if (app.count("OPERATION") != 0) // also if it is empty, as when a script has lost it
        return ShowOne(arguments);
    return Show(arguments, AskForEverything(arguments.provide), &Answer::failure);
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
        fmt::print(stderr, "{}: {}\n", Name, error.what());
    }
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    std::perror("fraxoinfo: cannot write the output");
    return CannotDo;
}
} // namespace FraxoInfo
