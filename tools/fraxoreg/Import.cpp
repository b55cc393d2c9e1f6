#include <algorithm>
#include <cerrno>
#include <istream>
#include <iterator>
#include <optional>
#include <ostream>
#include <system_error>
#include <vector>

#include "Keys.h"
#include "Operations.h"
#include "posix/ReadFile.h"
#include "registry/RegistryFileReader.h"
#include "registry/RegistryPath.h"
#include "registry/RegistryText.h"

namespace FraxoReg
{
namespace
{
namespace Registry = Quenlor::StandIn::Registry;

/// Collects what a registry file asks for, hive by hive.
class ChangeList final : public Registry::RegistryFileHandler
{
public:
    bool BeginKey(HKEY root, std::string_view path) override { return AddChange(root, path, false); }
    bool DeleteKey(HKEY root, std::string_view path) override { return AddChange(root, path, true); }

    void SetValue(std::string_view name, DWORD type, std::string_view data) override
    {
        std::string stored{data};
        if (Registry::IsText(type) && !stored.empty() && stored.back() != '\0')
            stored += '\0'; // as Windows does on import
        m_last->back().values.push_back({std::string{name}, type, std::move(stored)});
    }

    void DeleteValue(std::string_view name) override
    {
        m_last->back().values.push_back({std::string{name}, REG_NONE, {}});
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
    struct ValueChange
    {
        std::string name;
        DWORD type;
        std::optional<std::string> data; ///< None to delete the value.
    };

    struct KeyChange
    {
        std::string path;
        bool isDeletion;
        std::vector<ValueChange> values;
    };

    bool AddChange(HKEY root, std::string_view path, bool isDeletion)
    {
        KeyName place = PlaceOf({root, std::string{path}});
        if (!Registry::IsLegalKeyPath(place.path)) // too deep for the classes
            return false;
        m_last = place.root == HKEY_LOCAL_MACHINE ? &m_ofMachine : &m_ofUser;
        m_last->push_back({std::move(place.path), isDeletion, {}});
        return true;
    }

    static void Apply(HKEY root, const std::vector<KeyChange>& changes)
    {
        if (changes.empty())
            return;
        const auto edit = [&](Key& hive)
        {
            for (const KeyChange& change : changes)
            {
                if (change.isDeletion)
                    hive.Delete(change.path);
                else
                    Apply(change.values, hive.Create(change.path));
            }
            return ERROR_SUCCESS;
        };
        ChangeHive(root, edit);
    }

    static void Apply(const std::vector<ValueChange>& changes, Key& key)
    {
        for (const ValueChange& change : changes)
        {
            if (change.data)
                key.SetValue(change.name, change.type, *change.data);
            else
                key.DeleteValue(change.name);
        }
    }

    std::vector<KeyChange> m_ofMachine;
    std::vector<KeyChange> m_ofUser;
    std::vector<KeyChange>* m_last = nullptr;
};

std::string ReadFile(const std::string& path)
{
    const Quenlor::Posix::FileDescriptor file = Quenlor::Posix::OpenFile(path);
    std::optional<std::string> text;
    if (file)
        text = Quenlor::Posix::ReadAll(file);
    if (text)
        return *std::move(text);
    const int error = errno;
    throw Failure{"Error opening the file. There may be a disk or file system error.\n" + path + ": " +
                  (!file && error == EINVAL ? "Not a regular file; - is the standard input"
                                            : std::generic_category().message(error)) +
                  '.'};
}

std::string Counted(std::size_t count)
{
    return std::to_string(count) + " malformed line" + (count == 1 ? "" : "s");
}

/// `FILE:LINE: reason: the line` for the first problems, the line as far as it is short.
std::string Described(const std::vector<Registry::RegistryFileProblem>& problems, const std::string& file)
{
    constexpr std::size_t most = 20;
    constexpr std::size_t longest = 60;
    std::string text;
    for (const Registry::RegistryFileProblem& problem : problems)
    {
        if (&problem - problems.data() == most)
            return text + "... and more.\n";
        const std::string line = problem.text.substr(0, problem.text.find_first_of("\r\n"));
        std::size_t end = std::min(line.size(), longest);
        while (end < line.size() && end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80)
            --end; // not within a character
        text += file + ':' + std::to_string(problem.line) + ": " + problem.reason + ": " + line.substr(0, end) +
                (end < line.size() ? "...\n" : "\n");
    }
    return text;
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
} // namespace FraxoReg
