#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <istream>
#include <iterator>
#include <optional>
#include <ostream>
#include <system_error>
#include <vector>

#include <fmt/format.h>

#include "Keys.h"
#include "Operations.h"
#include "posix/NextVersion.h"
#include "posix/ReadFile.h"
#include "posix/RetryInterrupted.h"
#include "registry/RegistryFileReader.h"
#include "registry/RegistryFileWriter.h"
#include "registry/RegistryPath.h"

namespace FraxoReg
{
namespace
{
namespace fs = std::filesystem;
namespace Posix = Quenlor::Posix;
namespace Registry = Quenlor::StandIn::Registry;

std::string ReadFile(const std::string& path)
{
    const Posix::RegularFile file = Posix::OpenFile(path);
    std::optional<std::string> text;
    if (file)
        text = Posix::ReadAll(file);
    if (text)
        return *std::move(text);
    const int error = errno;
    throw Failure{fmt::format("Error opening the file. There may be a disk or file system error.\n{}: {}.", path,
                              !file && error == EINVAL ? "Not a regular file; - is the standard input"
                                                       : std::generic_category().message(error))};
}

/// Makes all changes that a registry file asks for in one hive, or none. @return whether it asks for any
bool ApplyTo(HKEY root, const std::string& text, const std::vector<KeyName>& places)
{
    if (std::ranges::find(places, root, &KeyName::root) == places.end())
        return false;
    const auto edit = [&](Key& hive)
    {
        Key unused;
        auto next = places.begin(); // which cannot be found while the hive is being changed
        const auto place = [&](HKEY, std::string& path)
        {
            path = next->path;
            return next++->root == root ? &hive : &unused;
        };
        Registry::ReadRegistryFile(text, Registry::RegistryFileUse::Import, place);
        return ERROR_SUCCESS;
    };
    ChangeHive(root, edit);
    return true;
}

/// What one hive refuses leaves the hive before it changed.
void Apply(const std::string& text, const std::vector<KeyName>& places)
{
    const bool isMachineChanged = ApplyTo(HKEY_LOCAL_MACHINE, text, places);
    try
    {
        ApplyTo(HKEY_CURRENT_USER, text, places);
    }
    catch (const Failure& failure)
    {
        if (!isMachineChanged)
            throw;
        throw Failure{failure.what() + std::string{"\nThe changes of HKEY_LOCAL_MACHINE were made before."}};
    }
}

std::string Counted(std::size_t count)
{
    return fmt::format("{} malformed line{}", count, count == 1 ? "" : "s");
}

/// `FILE:LINE: reason: the line` for the first problems, with the start of the line.
std::string Described(const std::vector<Registry::RegistryFileProblem>& problems, const std::string& file)
{
    constexpr std::size_t most = 20;
    std::string text;
    for (const Registry::RegistryFileProblem& problem : problems)
    {
        if (&problem - problems.data() == most)
            return text + "... and more.\n";
        const std::string line = problem.text.substr(0, problem.text.find_first_of("\r\n"));
        const std::string start = fmt::format("{:.60}", line); // of characters, not bytes
        text += fmt::format("{}:{}: {}: {}{}\n", file, problem.line, problem.reason, start, start == line ? "" : "...");
    }
    return text;
}

/// @return false, with the reason in errno, when it is not on disk
bool ReplaceFile(const fs::path& file, std::string_view text, mode_t mode)
{
    const std::string folderName = file.has_parent_path() ? file.parent_path().string() : ".";
    const Posix::FileDescriptor folder{
        Posix::RetryInterrupted([&] { return ::open(folderName.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); })};
    if (!folder)
        return false;
    const std::string name = file.filename().string();
    Posix::NextVersion next{folder, name + '.' + Posix::RandomName(), mode};
    return next && Posix::WriteAll(next.File(), text) && next.Replace(name) && Posix::Sync(folder);
}

/// Puts a file in place in one step; a reader, and a crash, find the old one or the new.
void WriteTextFile(const std::string& path, std::string_view text, mode_t mode)
{
    constexpr char refusal[] = "Unable to write to the file.\n";
    std::error_code error;
    const fs::path real = fs::canonical(path, error); // so that a link stays one
    if (!error && !fs::is_regular_file(real, error))
        throw Failure{refusal + path + " is not a file; - is the standard output."};
    if (!ReplaceFile(real.empty() ? fs::path{path} : real, text, mode))
        throw Failure{refusal + path + ": " + std::generic_category().message(errno) + '.'};
}
} // namespace

ExitStatus Import(const Arguments& arguments, const Console& console)
{
    const bool isStandardInput = arguments.Operand(0) == "-";
    const std::string file = isStandardInput ? "standard input" : arguments.Operand(0);
    const std::string text =
        isStandardInput ? std::string{std::istreambuf_iterator<char>{console.in}, {}} : ReadFile(file);
    Key unused;
    std::vector<KeyName> places; // of the keys in the file; without a root for those that are left out
    const auto place = [&](HKEY root, const std::string& path)
    {
        const KeyName name = PlaceOf({root, path});
        const bool isLegal = Registry::IsLegalKeyPath(name.path); // else too deep for the classes
        places.push_back(isLegal ? name : KeyName{});
        return isLegal ? &unused : nullptr;
    };
    const auto result = Registry::ReadRegistryFile(text, Registry::RegistryFileUse::Import, place);
    if (!result.isRegistryFile)
        throw Failure{"The specified file is not a registry script.\nThe first line of " + file +
                      R"( has to be "Windows Registry Editor Version 5.00" or "REGEDIT4".)"};
    const std::string problems = Described(result.problems, file);
    if (!problems.empty() && !arguments.Has("--skip-errors"))
        throw Failure{"Nothing was imported: " + file + " has " + Counted(result.problemCount) + ".\n" + problems +
                      "Correct the file, or import its other lines with --skip-errors."};
    Apply(text, places);
    console.out << Completed;
    if (problems.empty())
        return Success;
    console.err << Shown("WARNING: " + Counted(result.problemCount) + " left out.\n" + problems);
    return Partly;
}

ExitStatus Export(const Arguments& arguments, const Console& console)
{
    const KeyName key = ParseKeyName(arguments.Operand(0));
    const std::string& file = arguments.Operand(1);
    const bool isStandardOutput = file == "-";
    std::string text;
    const auto write = [&](const Key& found)
    {
        using Form = Registry::RegistryFileForm;
        text = Registry::WriteRegistryFile(found, key.FullName(), isStandardOutput ? Form::Hive : Form::Windows);
    };
    if (!ReadKey(key, write))
        throw NotFound();
    if (isStandardOutput)
    {
        console.out << (console.outIsTerminal ? Shown(text) : text);
        return Success;
    }
    std::error_code error;
    if (!arguments.Has("/y") && fs::exists(file, error) &&
        !Confirm(console, "File " + file + " already exists. Overwrite "))
        return Success;
    // What may be a user's is readable only by that user, as the hive is.
    WriteTextFile(file, text, key.root == HKEY_LOCAL_MACHINE ? 0644 : 0600);
    console.out << Completed;
    return Success;
}
} // namespace FraxoReg
