#include <optional>
#include <ostream>

#include "Keys.h"
#include "Operations.h"
#include "ValueText.h"
#include "common/StoredText.h"
#include "posix/CaseFolding.h"
#include "registry/Hives.h"
#include "registry/RegistryPath.h"

namespace FraxoReg
{
namespace
{
namespace Registry = Quenlor::StandIn::Registry;

/// Prints keys and values.
class Listing final
{
public:
    Listing(const Arguments& arguments, const Console& console)
        : m_isRecursive{arguments.Has("/s")}, m_separator{SeparatorOf(arguments, "/se")}, m_console{console}
    {
        if (arguments.Has("/v") || arguments.Has("/ve"))
            m_foldedName = Quenlor::Posix::FoldCase(arguments.Text("/v").value_or(""));
    }

    void Print(const Key& key, std::string& path)
    {
        PrintValues(key, path);
        if (m_foldedName && !m_isRecursive)
            return;
        const std::size_t length = path.size();
        for (const auto& [folded, subKey] : key.SubKeys())
        {
            Registry::AppendToPath(path, subKey.Name());
            if (m_isRecursive)
                Print(subKey, path);
            else
                PrintKey(path);
            path.resize(length);
        }
    }

    void PrintKey(std::string_view path) { m_console.out << Tools::Printable(path) << '\n'; }

    void PrintValue(const std::string& name, DWORD type, std::string_view data)
    {
        m_console.out << "    " << Tools::Printable(ShownName(name)) << "    " << NameOfType(type) << "    "
                      << Tools::Printable(data) << '\n';
    }

    std::size_t ValueCount() const noexcept { return m_valueCount; }

private:
    /// A key without values is named where all its values are asked for.
    void PrintValues(const Key& key, std::string_view path)
    {
        const std::size_t before = m_valueCount;
        for (const auto& [folded, value] : key.Values())
        {
            if (m_foldedName && *m_foldedName != folded)
                continue;
            if (m_valueCount++ == before)
                PrintKey(path);
            PrintValue(value.name, value.type, FormatData(value.type, value.data, m_separator));
        }
        if (m_valueCount != before)
            m_console.out << '\n';
        else if (m_isRecursive && !m_foldedName)
            PrintKey(path);
    }

    bool m_isRecursive;
    std::optional<std::string> m_foldedName; // of the one value to show
    std::string m_separator;
    std::size_t m_valueCount = 0;
    const Console& m_console;
};

/// A person may have edited the hive: what is not shown because of a slip should not look as if it were missing.
void WarnAboutSkippedLines(HKEY root, const Console& console)
{
    std::vector<Registry::RegistryFileProblem> problems;
    if (Registry::HiveProblems(root, problems) != ERROR_SUCCESS || problems.empty())
        return;
    console.err << "WARNING: " << problems.size() << " malformed lines are skipped in "
                << Tools::Printable(Registry::HivePath(root)) << "\nThe first is line " << problems.front().line << ": "
                << problems.front().reason << ".\n";
}
} // namespace

ExitStatus Query(const Arguments& arguments, const Console& console)
{
    arguments.RefuseTogether({"/v", "/ve"});
    const KeyName name = ParseKeyName(arguments.Operand(0));
    Listing listing{arguments, console};
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
    {
        if (name.root == root || name.root == HKEY_CLASSES_ROOT)
            WarnAboutSkippedLines(root, console);
    }

    const bool asksForOne = arguments.Has("/v") || arguments.Has("/ve");
    const auto print = [&](const Key& key)
    {
        std::string path = name.FullName();
        const bool isMissing = asksForOne && !arguments.Has("/s") && !key.FindValue(arguments.Text("/v").value_or(""));
        if (isMissing && arguments.Has("/v"))
            throw NotFound();
        console.out << '\n';
        listing.Print(key, path);
        if (!isMissing)
            return;
        listing.PrintKey(path);
        listing.PrintValue({}, REG_SZ, "(value not set)");
        console.out << '\n';
    };
    if (!ReadKey(name, print))
        throw NotFound();
    if (!asksForOne || !arguments.Has("/s"))
        return Success;
    console.out << "End of search: " << listing.ValueCount() << " match(es) found.\n";
    return listing.ValueCount() == 0 ? Failed : Success;
}
} // namespace FraxoReg
