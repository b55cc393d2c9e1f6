#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "Applications.h"
#include "Catalogue.h"
#include "Colour.h"
#include "Doctor.h"
#include "Features.h"
#include "LogSetup.h"
#include "Report.h"
#include "Suggestions.h"
#include "SupportReport.h"
#include "VersionConfig.h"
#include "Why.h"

namespace
{
constexpr int Success = 0;
constexpr int Failure = 1;
constexpr int WrongUse = 2;

void Print(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

int ReportUnknown(const std::string& name)
{
    std::fprintf(stderr, "fraxoinfo: there is no operation '%s'.\n", name.c_str());
    const auto nearest = FraxoInfo::NearestNames(name);
    if (nearest.empty())
        std::fputs("Run fraxoinfo without arguments to see them all.\n", stderr);
    else
        std::fputs("Did you mean:\n", stderr);
    for (const std::string_view suggestion : nearest)
        std::fprintf(stderr, "  %s\n", std::string{suggestion}.c_str());
    return WrongUse;
}

int PrintOne(const std::string& name, bool asJson, bool provide)
{
    const FraxoInfo::Operation* const operation = FraxoInfo::Find(name);
    if (!operation)
        return ReportUnknown(name);
    const FraxoInfo::Answer answer = FraxoInfo::AskFor(*operation, provide);
    if (asJson)
        Print(FraxoInfo::FormatJson({answer}));
    else if (answer.failure.empty())
        Print(FraxoInfo::ToText(answer.value) + "\n");
    else
        std::fprintf(stderr, "fraxoinfo: %s failed: %s\n", name.c_str(), answer.failure.c_str());
    return answer.failure.empty() ? Success : Failure;
}

int PrintExplanation(const std::string& name)
{
    const FraxoInfo::Operation* const operation = FraxoInfo::Find(name);
    if (!operation)
        return ReportUnknown(name);
    const FraxoInfo::Explanation explanation = FraxoInfo::Explain(*operation);
    Print(FraxoInfo::FormatExplanation(explanation));
    return explanation.answer.failure.empty() ? Success : Failure;
}

int PrintNames()
{
    for (const FraxoInfo::Operation& operation : FraxoInfo::Catalogue())
        std::printf("%s\n", std::string{operation.name}.c_str());
    return Success;
}

int PrintFeatures()
{
    const auto features = FraxoInfo::ReadFeatures();
    Print(FraxoInfo::FormatFeatures(features));
    return std::ranges::all_of(features, &std::string::empty, &FraxoInfo::Feature::failure) ? Success : Failure;
}

int PrintApplications()
{
    Print(FraxoInfo::FormatApplications(FraxoInfo::FindApplications()));
    return Success;
}

int PrintLog(const std::string& program)
{
    Quenlor::QnFileName executable = FraxoInfo::ThisProgram();
    std::error_code error;
    if (!program.empty() && !std::filesystem::is_regular_file(program, error))
    {
        std::fprintf(stderr, "fraxoinfo: there is no program %s: name the file of an executable\n", program.c_str());
        return WrongUse;
    }
    if (!program.empty())
        executable.SetName(std::filesystem::absolute(program).lexically_normal().wstring().c_str());
    const FraxoInfo::LogSetup setup = FraxoInfo::ExamineLog(executable);
    Print(FraxoInfo::FormatLogSetup(setup));
    return setup.exists && setup.faults.empty() ? Success : Failure;
}

int PrintFindings()
{
    const auto findings = FraxoInfo::Examine();
    Print(FraxoInfo::FormatFindings(findings));
    return findings.empty() ? Success : Failure;
}

int WriteReport(const std::string& file, bool withPersonalData)
{
    const std::string report = FraxoInfo::MakeSupportReport(withPersonalData);
    std::ofstream stream{file, std::ios::binary};
    stream << report << std::flush;
    if (!stream)
    {
        std::fprintf(stderr, "fraxoinfo: cannot write %s: name a file in a folder that you may write to\n",
                     file.c_str());
        return Failure;
    }
    std::printf("Wrote %s.%s\n", file.c_str(),
                withPersonalData ? ""
                                 : " The user's name, account and e-mail address and the project's name are left out.");
    return Success;
}

int PrintDifferences(const std::string& first, const std::string& second)
{
    try
    {
        const std::string differences = FraxoInfo::CompareReports(first, second);
        Print(differences.empty() ? "No differences.\n" : differences);
        return differences.empty() ? Success : Failure;
    }
    catch (const std::runtime_error& error) // not to be taken for a difference
    {
        std::fprintf(stderr, "fraxoinfo: %s\n", error.what());
        return WrongUse;
    }
}

struct Arguments
{
    std::string operation;
    bool asJson = false;
    bool provide = false;
    std::string program;
    std::string file;
    std::string otherFile;
    bool withPersonalData = false;
};

/// @param status what the program ends with; set by the command that was given
void AddCommands(CLI::App& app, Arguments& arguments, int& status)
{
    const auto add = [&](const char* name, const char* description, std::function<int()> run)
    {
        CLI::App* const command = app.add_subcommand(name, description);
        command->callback([&status, run = std::move(run)] { status = run(); });
        return command;
    };
    add("why", "Show what led to an answer", [&] { return PrintExplanation(arguments.operation); })
        ->add_option("operation", arguments.operation, "The operation, with or without its class")
        ->required();
    add("features", "List the feature switches and what decided each", PrintFeatures);
    add("applications", "Show which other products were found, and why", PrintApplications);
    add("log", "Show how a program's log is set up, and validate its configuration",
        [&] {
        return PrintLog(arguments.program);
    })->add_option("executable", arguments.program, "The program's executable; fraxoinfo's own if not given");

    CLI::App* const report = add("report", "Write a file to attach to a support case",
                                 [&] { return WriteReport(arguments.file, arguments.withPersonalData); });
    report->add_option("file", arguments.file, "The file to write")->required();
    report->add_flag("--personal", arguments.withPersonalData,
                     "Keep the user's and the project's names and the e-mail address");

    CLI::App* const diff = add("diff", "Show what differs between two reports",
                               [&] { return PrintDifferences(arguments.file, arguments.otherFile); });
    diff->add_option("first", arguments.file, "A file of report or --json")->required();
    diff->add_option("second", arguments.otherFile, "Another")->required();

    add("doctor", "Examine the installation", PrintFindings);
    add("names", "List the names of all operations", PrintNames);
    app.require_subcommand(0, 1);
}

int Run(int argc, char** argv)
{
    CLI::App app{"Prints what the shared utilities answer on this machine: every location and setting, or one."};
    const auto release = Quenlor::Fraxo::SharedUtilities::Native::VersionConfig::GetReleaseNumber();
    app.set_version_flag("--version", std::string{"fraxoinfo, release "} + release.c_str());
    Arguments arguments;
    int status = Success;
    app.add_option("operation", arguments.operation, "The operation to ask for, with or without its class");
    app.add_flag("--json", arguments.asJson, "Print JSON");
    app.add_flag("--provision", arguments.provide, "Make the user's missing files from the installed defaults");
    AddCommands(app, arguments, status);
    app.footer( // behind the commands, which would take it over
        "Examples:\n"
        "  fraxoinfo                    every answer, grouped by class\n"
        "  fraxoinfo GetFRAXOProRoot    one answer, bare, for scripts\n"
        "  fraxoinfo --json             every answer as JSON\n"
        "  fraxoinfo --provision        the same answers, with the user's missing files copied first\n"
        "  fraxoinfo why GetHelpDirectory\n"
        "                               what the library asked the machine for that answer, and what decided\n"
        "  fraxoinfo features           the feature switches and what decided each\n"
        "  fraxoinfo applications       other products on this machine, and the registry places that decided\n"
        "  fraxoinfo log Editor.exe     how that program's log is set up, and what is wrong with its configuration\n"
        "  fraxoinfo report case.json   everything a support case needs, in one file without personal data\n"
        "  fraxoinfo diff A.json B.json what differs between two such files, or two of --json\n"
        "  fraxoinfo doctor             what is wrong with the installation, and what to do\n\n"
        "No file of the product is created or changed without --provision. As in any application, a number that\n"
        "an earlier release stored as text becomes a number when it is read, and the shell's folder for this\n"
        "user is made if it is missing. What depends on the executable's folder or version is fraxoinfo's own.\n"
        "Exit status: 0 success, 1 an operation failed, something needs attention or differs, 2 wrong use.");
    app.failure_message([](const CLI::App* command, const CLI::Error& error)
                        { return "fraxoinfo: " + CLI::FailureMessage::simple(command, error); });

    FraxoInfo::UseColours(FraxoInfo::CanShowColours());
    try
    {
        app.parse(argc, argv); // runs the command, if there is one
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error) == Success ? Success : WrongUse;
    }
    if (!app.get_subcommands().empty())
        return status;
    if (app.count("operation") != 0) // an empty name is a name as well: a script has lost one
        return PrintOne(arguments.operation, arguments.asJson, arguments.provide);
    const auto answers = FraxoInfo::AskForEverything(arguments.provide);
    Print(arguments.asJson ? FraxoInfo::FormatJson(answers) : FraxoInfo::FormatTable(answers));
    return Success;
}
} // namespace

int main(int argc, char** argv)
{
    try
    {
        const int status = Run(argc, argv);
        if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
            return status;
        std::perror("fraxoinfo: cannot write the output");
        return WrongUse;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "fraxoinfo: %s\n", error.what());
        return Failure;
    }
}
