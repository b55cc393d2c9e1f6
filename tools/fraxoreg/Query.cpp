#include <optional>
#include <ostream>

#include "Failure.h"
#include "Pattern.h"
#include "RegistryAccess.h"
#include "ValueText.h"
#include "Verbs.h"
#include "posix/CaseFolding.h"
#include "registry/Hives.h"
#include "registry/RegistryPath.h"
#include "registry/RegistryText.h"

namespace FraxoReg
{
namespace
{
namespace Registry = Quenlor::StandIn::Registry;

constexpr Switch Switches[] = {{"v", Takes::OptionalText},
                               {"ve"},
                               {"s"},
                               {"f", Takes::Text},
                               {"k"},
                               {"d"},
                               {"c"},
                               {"e"},
                               {"t", Takes::Text},
                               {"z"},
                               {"se", Takes::Text},
                               {"reg:32"},
                               {"reg:64"}};

constexpr std::string_view Help = R"(
fraxoreg QUERY KeyName [/v [ValueName] | /ve] [/s]
               [/f Data [/k] [/d] [/c] [/e]] [/t Type] [/z] [/se Separator]
               [/reg:32 | /reg:64]

  KeyName  ROOTKEY[\SubKey], with the root key HKLM, HKCU or HKCR or its long
           name.

  /v       Queries for a specific registry key value.
           If omitted, all values for the key are queried.

           The name can be omitted only when specified along with the /f
           switch. This specifies to search in value names only.

  /ve      Queries for the default value or empty value name (Default).

  /s       Queries all subkeys and values recursively (like dir /s).

  /se      One character to show between the strings of REG_MULTI_SZ data.
           If omitted, "\0" is the separator.

  /f       Specifies the data or pattern to search for, in the names of subkeys
           and in the names and data of values; * stands for any characters and
           ? for one.

  /k       Specifies to search in key names only.

  /d       Specifies to search in data only.

  /c       Specifies that the search is case sensitive.

  /e       Specifies to return only exact matches.
           By default a part of the text is enough.

  /t       Specifies the registry value data type
           [ REG_SZ    | REG_MULTI_SZ | REG_EXPAND_SZ |
             REG_DWORD | REG_QWORD    | REG_BINARY    | REG_NONE ]
           Defaults to all types.

  /z       Verbose: Shows the numeric equivalent for the type of the value.

  /reg:32, /reg:64
           Accepted as on Windows. There is one view of the registry.

  The return code of a search without a match is 1.

Examples:

  fraxoreg QUERY 'HKLM\Software\MyCo' /v Version
    Displays the value Version

  fraxoreg QUERY 'HKLM\Software\MyCo\Setup' /se '#'
    Displays all the subkeys and values with "#" as the separator for all
    values whose type is REG_MULTI_SZ

  fraxoreg QUERY HKLM /s /f SYSTEM /t REG_SZ /c /e
    Displays the keys and values with case sensitive and exact occurrences of
    "SYSTEM" under HKLM, values of the type REG_SZ alone

  fraxoreg QUERY HKCU /s /f 0F /d /t REG_BINARY
    Displays the binary values under HKCU that have "0F" in their data

  fraxoreg QUERY 'HKLM\Software' /ve
    Displays the empty value (Default) of HKLM\Software
)";

DWORD ParseType(const std::string& name)
{
    const std::optional<DWORD> type = TypeOfName(name);
    if (!type)
        throw InvalidSyntax("Specify valid type for '/t'.");
    return *type;
}

/// Which keys and values are shown.
class Filter final
{
public:
    explicit Filter(const Arguments& arguments)
    {
        if (arguments.Has("ve") || arguments.Text("v"))
            m_foldedName = Quenlor::Posix::FoldCase(arguments.Text("v").value_or(""));
        if (const std::optional<std::string> type = arguments.Text("t"))
            m_type = ParseType(*type);
        m_isSearch = arguments.Has("f") || m_type || (m_foldedName && arguments.Has("s"));
        m_searchesKeys = !m_isSearch && !m_foldedName;
        if (const std::optional<std::string> pattern = arguments.Text("f"))
            SetPattern(*pattern, arguments);
    }

    bool IsSearch() const noexcept { return m_isSearch; } ///< The matches are counted then.

    bool ShowsKey(const Key& key) const { return m_searchesKeys && (!m_pattern || m_pattern->Matches(key.Name())); }

    bool ShowsValue(const Value& value) const
    {
        if ((m_foldedName && *m_foldedName != value.foldedName) || (m_type && *m_type != value.type))
            return false;
        return !m_pattern || (m_searchesNames && m_pattern->Matches(value.name)) ||
               (m_searchesData && m_pattern->Matches(FormatData(value.type, value.data)));
    }

private:
    void SetPattern(const std::string& text, const Arguments& arguments)
    {
        m_pattern.emplace(text, arguments.Has("c") ? Pattern::Case::Matters : Pattern::Case::Ignored,
                          arguments.Has("e") ? Pattern::Extent::Whole : Pattern::Extent::Anywhere);
        const bool searchesNamesOnly = arguments.Has("v") && !m_foldedName;
        const bool searchesAll = !arguments.Has("k") && !arguments.Has("d") && !searchesNamesOnly;
        m_searchesKeys = arguments.Has("k") || (searchesAll && !m_foldedName);
        m_searchesNames = searchesNamesOnly || (searchesAll && !m_foldedName);
        m_searchesData = arguments.Has("d") || searchesAll;
    }

    std::optional<std::string> m_foldedName; // of the one value to show
    std::optional<DWORD> m_type;
    std::optional<Pattern> m_pattern;
    bool m_isSearch = false;
    bool m_searchesKeys = false;
    bool m_searchesNames = false;
    bool m_searchesData = false;
};

/// Prints keys and values as the filter says.
class Listing final
{
public:
    Listing(const Arguments& arguments, const Console& console)
        : m_filter{arguments},
          m_isRecursive{arguments.Has("s")},
          m_showsTypeNumber{arguments.Has("z")},
          m_separator{arguments.Text("se").value_or(std::string{DefaultSeparator})},
          m_console{console}
    {
        if (arguments.Has("se") && Registry::Utf16Length(m_separator) != 1)
            throw InvalidSyntax("Specify one character for '/se'.");
    }

    bool IsSearch() const noexcept { return m_filter.IsSearch(); }
    std::size_t MatchCount() const noexcept { return m_matchCount; }

    void Print(const Key& key, std::string path)
    {
        PrintBlock(key, path, false);
        PrintSubKeys(key, path);
    }

    void PrintKey(std::string_view path) { m_console.out << m_console.Shown(path) << '\n'; }

    void PrintValue(const std::string& name, DWORD type, std::string_view data)
    {
        m_console.out << "    " << m_console.Shown(ShownName(name)) << "    " << NameOfType(type);
        if (m_showsTypeNumber)
            m_console.out << " (" << type << ')';
        m_console.out << "    " << m_console.Shown(data) << '\n';
    }

private:
    void PrintSubKeys(const Key& key, std::string& path)
    {
        const std::size_t length = path.size();
        for (const auto& subKey : key.SubKeys())
        {
            Registry::AppendToPath(path, subKey->Name());
            const bool isShown = m_filter.ShowsKey(*subKey);
            m_matchCount += isShown ? 1 : 0;
            if (m_isRecursive)
            {
                PrintBlock(*subKey, path, isShown);
                PrintSubKeys(*subKey, path);
            }
            else if (isShown)
                PrintKey(path);
            path.resize(length);
        }
    }

    /// A key and those of its values that are shown; the key alone only when `isShown` says so.
    void PrintBlock(const Key& key, std::string_view path, bool isShown)
    {
        bool hasValues = false;
        for (const auto& value : key.Values())
        {
            if (!m_filter.ShowsValue(*value))
                continue;
            if (!hasValues)
                PrintKey(path);
            PrintValue(value->name, value->type, FormatData(value->type, value->data, m_separator));
            hasValues = true;
            ++m_matchCount;
        }
        if (hasValues)
            m_console.out << '\n';
        else if (isShown)
            PrintKey(path);
    }

    Filter m_filter;
    bool m_isRecursive;
    bool m_showsTypeNumber;
    std::string m_separator;
    std::size_t m_matchCount = 0;
    const Console& m_console;
};

/// A person may have edited the hive: what is not shown because of a slip should not look as if it were missing.
void WarnAboutSkippedLines(HKEY root, const Console& console)
{
    std::vector<Registry::RegistryFileProblem> problems;
    if (Registry::HiveProblems(root, problems) != ERROR_SUCCESS || problems.empty())
        return;
    console.err << "WARNING: " << problems.size() << " malformed lines are skipped in " << Registry::HivePath(root)
                << "\nThe first is line " << problems.front().line << ": " << problems.front().reason << ".\n";
}

void CheckSyntax(const Arguments& arguments)
{
    arguments.RefuseTogether({"v", "ve"});
    if (arguments.Has("f"))
        return;
    for (const std::string_view name : {"k", "d", "c", "e"})
    {
        if (arguments.Has(name))
            throw InvalidSyntax("'/" + std::string{name} + "' needs '/f'.");
    }
    if (arguments.Has("v") && !arguments.Text("v"))
        throw InvalidSyntax("Value expected for '/v'.");
}

ExitStatus Run(const Arguments& arguments, const Console& console)
{
    CheckSyntax(arguments);
    const KeyName name = ParseKeyName(arguments.Operand(0));
    Listing listing{arguments, console};
    if (name.root != HKEY_CURRENT_USER)
        WarnAboutSkippedLines(HKEY_LOCAL_MACHINE, console);
    if (name.root != HKEY_LOCAL_MACHINE)
        WarnAboutSkippedLines(HKEY_CURRENT_USER, console);

    const bool asksForOne = !listing.IsSearch() && (arguments.Has("v") || arguments.Has("ve"));
    ReadKey(name,
            [&](const Key& key)
            {
        const bool isMissing = asksForOne && !key.FindValue(arguments.Text("v").value_or(""));
        if (isMissing && !arguments.Has("ve"))
            throw NotFound();
        console.out << '\n';
        listing.Print(key, name.FullName());
        if (isMissing)
        {
            listing.PrintKey(name.FullName());
            listing.PrintValue({}, REG_SZ, "(value not set)");
            console.out << '\n';
        }
    });
    if (!listing.IsSearch())
        return Success;
    console.out << "End of search: " << listing.MatchCount() << " match(es) found.\n";
    return listing.MatchCount() == 0 ? Failed : Success;
}
} // namespace

const Verb QueryVerb{"QUERY", 1, Switches, Help, Run};
} // namespace FraxoReg
