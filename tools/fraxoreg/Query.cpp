#include <optional>
#include <ostream>

#include <fmt/format.h>

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

/// Prints keys and values, and counts those.
struct Listing
{
    const Console& console;
    std::string separator;
    bool isRecursive;
    std::optional<std::string> foldedName; // of the one value to show
    std::size_t valueCount = 0;

    void Print(const Key& key, std::string& path)
    {
        PrintValues(key, path);
        if (foldedName && !isRecursive)
            return;
        const std::size_t length = path.size();
        for (const auto& [folded, subKey] : key.SubKeys())
        {
            Registry::AppendToPath(path, subKey.Name());
            if (isRecursive)
                Print(subKey, path);
            else
                PrintKey(path);
            path.resize(length);
        }
    }

    void PrintKey(std::string_view path) const { console.out << Tools::Printable(path) << '\n'; }

    void PrintValue(const std::string& name, DWORD type, std::string_view data) const
    {
        console.out << fmt::format("    {}    {}    {}\n", Tools::Printable(ShownName(name)), NameOfType(type),
                                   Tools::Printable(data));
    }

private:
    /// A key without values is named where all its values are asked for.
    void PrintValues(const Key& key, std::string_view path)
    {
        const std::size_t before = valueCount;
        for (const auto& [folded, value] : key.Values())
        {
            if (foldedName && *foldedName != folded)
                continue;
            if (valueCount++ == before)
                PrintKey(path);
            PrintValue(value.name, value.type, FormatData(value.type, value.data, separator));
        }
        if (valueCount != before)
            console.out << '\n';
        else if (isRecursive && !foldedName)
            PrintKey(path);
    }
};

/// What is skipped because somebody made a slip in the hive should not look as if it were missing.
void WarnAboutSkippedLines(HKEY root, const Console& console)
{
    std::vector<Registry::RegistryFileProblem> problems;
    if (Registry::HiveProblems(root, problems) != ERROR_SUCCESS || problems.empty())
        return;
    console.err << fmt::format("WARNING: {} malformed lines are skipped in {}\nThe first is line {}: {}.\n",
                               problems.size(), Tools::Printable(Registry::HivePath(root)), problems.front().line,
                               problems.front().reason);
}
} // namespace

ExitStatus Query(const Arguments& arguments, const Console& console)
{
    arguments.RefuseTogether({"/v", "/ve"});
    const KeyName name = ParseKeyName(arguments.Operand(0));
    const std::string valueName = arguments.Text("/v").value_or("");
    Listing listing{console, SeparatorOf(arguments, "/se"), arguments.Has("/s"), {}};
    if (arguments.Has("/v") || arguments.Has("/ve"))
        listing.foldedName = Quenlor::Posix::FoldCase(valueName);
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
    {
        if (name.root == root || name.root == HKEY_CLASSES_ROOT)
            WarnAboutSkippedLines(root, console);
    }
    const auto print = [&](const Key& key)
    {
        std::string path = name.FullName();
        const bool isMissing = listing.foldedName && !listing.isRecursive && !key.FindValue(valueName);
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
    if (!listing.foldedName || !listing.isRecursive)
        return Success;
    console.out << "End of search: " << listing.valueCount << " match(es) found.\n";
    return listing.valueCount == 0 ? Failed : Success;
}
} // namespace FraxoReg
