#include <cerrno>
#include <filesystem>
#include <functional>
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
#include "registry/RegistryFileReader.h"
#include "registry/RegistryFileWriter.h"
#include "registry/RegistryPath.h"
#include "registry/RegistryText.h"

namespace FraxoReg
{
namespace
{
namespace fs = std::filesystem;
namespace Registry = Quenlor::StandIn::Registry;

/// Collects what a registry file asks for, hive by hive.
class ChangeList final : public Registry::RegistryFileHandler
{
public:
    bool BeginKey(HKEY root, std::string_view path) override
    {
        return AddChange(root, path, [](Key& hive, Key*& key, const std::string& at) { key = &hive.Create(at); });
    }

    bool DeleteKey(HKEY root, std::string_view path) override
    {
        return AddChange(root, path, [](Key& hive, Key*&, const std::string& at) { hive.Delete(at); });
    }

    void SetValue(std::string_view name, DWORD type, std::string_view data) override
    {
        std::string stored{data};
        if (Registry::IsText(type) && !stored.empty() && stored.back() != '\0')
            stored += '\0'; // as Windows does on import
        m_last->push_back([name = std::string{name}, type, stored = std::move(stored)](Key&, Key*& key)
                          { key->SetValue(name, type, stored); });
    }

    void DeleteValue(std::string_view name) override
    {
        m_last->push_back([name = std::string{name}](Key&, Key*& key) { key->DeleteValue(name); });
    }

    /// Makes all changes of a hive in their order, or none. What one hive refuses leaves the hive before it changed.
    void Apply() const
    {
        Apply(HKEY_LOCAL_MACHINE, m_ofMachine);
        try
        {
            Apply(HKEY_CURRENT_USER, m_ofUser);
        }
        catch (const Failure& failure)
        {
            if (m_ofMachine.empty())
                throw;
            throw Failure{failure.what() + std::string{"\nThe changes of HKEY_LOCAL_MACHINE were made before."}};
        }
    }

private:
    using Change = std::function<void(Key& hive, Key*& key)>; // `key` is the one that values belong to

    template<class Make>
    bool AddChange(HKEY root, std::string_view path, Make make)
    {
        const KeyName place = PlaceOf({root, std::string{path}});
        if (!Registry::IsLegalKeyPath(place.path)) // too deep for the classes
            return false;
        m_last = place.root == HKEY_LOCAL_MACHINE ? &m_ofMachine : &m_ofUser;
        m_last->push_back([make, at = place.path](Key& hive, Key*& key) { make(hive, key, at); });
        return true;
    }

    static void Apply(HKEY root, const std::vector<Change>& changes)
    {
        const auto edit = [&](Key& hive)
        {
            Key* key = nullptr;
            for (const Change& change : changes)
                change(hive, key);
            return ERROR_SUCCESS;
        };
        if (!changes.empty())
            ChangeHive(root, edit);
    }

    std::vector<Change> m_ofMachine;
    std::vector<Change> m_ofUser;
    std::vector<Change>* m_last = nullptr;
};

std::string ReadFile(const std::string& path)
{
    const Quenlor::Posix::RegularFile file = Quenlor::Posix::OpenFile(path);
    std::optional<std::string> text;
    if (file)
        text = Quenlor::Posix::ReadAll(file);
    if (text)
        return *std::move(text);
    const int error = errno;
    throw Failure{fmt::format("Error opening the file. There may be a disk or file system error.\n{}: {}.", path,
                              !file && error == EINVAL ? "Not a regular file; - is the standard input"
                                                       : std::generic_category().message(error))};
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

/// Puts a file in place in one step; a reader, and a crash, find the old one or the new.
void WriteTextFile(const std::string& path, std::string_view text, mode_t mode)
{
    constexpr char refusal[] = "Unable to write to the file.\n";
    std::error_code error;
    const fs::path real = fs::canonical(path, error); // so that a link stays one
    if (!error && !fs::is_regular_file(real, error))
        throw Failure{refusal + path + " is not a file; - is the standard output."};
    if (!Quenlor::Posix::ReplaceFile(real.empty() ? path : real.string(), text, mode))
        throw Failure{refusal + path + ": " + std::generic_category().message(errno) + '.'};
}
} // namespace

ExitStatus Import(const Arguments& arguments, const Console& console)
{
    const bool isStandardInput = arguments.Operand(0) == "-";
    const std::string file = isStandardInput ? "standard input" : arguments.Operand(0);
    ChangeList changes;
    const Registry::RegistryFileResult result = Registry::ReadRegistryFile(
        isStandardInput ? std::string{std::istreambuf_iterator<char>{console.in}, {}} : ReadFile(file), changes);
    if (!result.isRegistryFile)
        throw Failure{"The specified file is not a registry script.\nThe first line of " + file +
                      R"( has to be "Windows Registry Editor Version 5.00" or "REGEDIT4".)"};
    const std::string problems = Described(result.problems, file);
    if (!problems.empty() && !arguments.Has("--skip-errors"))
        throw Failure{"Nothing was imported: " + file + " has " + Counted(result.problemCount) + ".\n" + problems +
                      "Correct the file, or import its other lines with --skip-errors."};
    changes.Apply();
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
