#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <Quenlor/QnFileName.h>
#include <Quenlor/QnStringUtilities.h>

#include "CoreUtilities.h"
#include "DevFeaturesConfig.h"
#include "IniReader.h"
#include "RegistryHelper.h"
#include "VersionConfig.h"
#include "configfiles/UserFile.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// TranscriptProgram SEED COUNT [NUMBER...]: makes random calls and prints each with its answer, which is the same on
// each system: scripts/transcripts compares them. With numbers only these calls; a call depends on the seed, its number
// and what the calls before it have stored.
//
// Left out, because the systems differ there and say so: the order of keys and values in a list, names beyond ASCII
// (which Windows reads in its code page), paths that begin with a separator and name no server (absolute on Linux), and
// null arguments.

namespace
{
using namespace Quenlor;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;

std::string Shown(std::string_view text)
{
    std::string shown = "\"";
    for (const char character : text)
    {
        if (character >= ' ' && character < 0x7F && character != '\\' && character != '"')
            shown += character;
        else
            shown += '\\' + std::to_string(static_cast<unsigned char>(character)) + ';';
    }
    return shown + '"';
}

/// One call: what it is made of, and what came of it.
class Call final
{
public:
    Call(unsigned seed, unsigned number) : m_random{seed * 1'000'003U + number} {}

    std::size_t Below(std::size_t limit) { return m_random() % limit; }

    template<std::size_t Count>
    std::string OneOf(const char* const (&choices)[Count])
    {
        return choices[Below(Count)];
    }
    template<std::size_t Count>
    std::string SomeOf(const char* const (&choices)[Count], std::size_t most)
    {
        std::string text;
        for (std::size_t i = Below(most + 1); i > 0; --i)
            text += OneOf(choices);
        return text;
    }

    /// Words as they are, everything else as it can be compared.
    template<typename... Parts>
    void Say(const Parts&... parts)
    {
        (Add(parts), ...);
    }
    const std::string& Text() const { return m_text; }

private:
    template<typename Part>
    void Add(const Part& part)
    {
        m_text += ' ';
        if constexpr (std::is_convertible_v<Part, const char*>)
            m_text += part;
        else if constexpr (std::is_arithmetic_v<Part>)
            m_text += std::to_string(part);
        else if constexpr (std::is_same_v<Part, WString>)
        {
            Utf8String utf8;
            QnStringUtilities::WCharToUtf8(utf8, part.c_str());
            m_text += Shown(utf8.ToStdString());
        }
        else
            m_text += Shown({part.data(), part.length()});
    }

    std::mt19937 m_random;
    std::string m_text;
};

/// Makes one of several calls.
void MakeOneOf(Call& call, const std::vector<std::function<void()>>& calls)
{
    calls[call.Below(calls.size())]();
}

/// What the calls store.
struct World
{
    ScratchMachine machine;
    std::string root = NativePath(machine.Folder("Files")).string();
    HKEY handles[4] = {};
};

constexpr const char* KeyNames[] = {"Key", "KEY", "Key\\Sub",   "key\\sub\\", "Other key", "Key\\Sub\\Deep", "a/b", "]",
                                    "%x%", "\"",  "Key\\\\Sub", "\\Key",      "."};
constexpr const char* ValueNames[] = {"", "Name", "NAME", "a\\b", " blank ", "=", "\"quoted\"", "@", "Other"};
constexpr const char* Bytes[] = {"",    "1",   "12",   "-7",          "text", "\xC3\xA9",
                                 "%x%", " 3x", "0x10", "99999999999", "\n",   "\x1B"};

void UseHelper(Call& call, World&)
{
    using R = RegistryHelper;
    const std::string key = "Transcript\\" + call.OneOf(KeyNames), name = call.OneOf(ValueNames);
    const auto number = static_cast<int>(call.Below(2000)) - 1000;
    const std::string text = call.SomeOf(Bytes, 2);
    const HKEY root = HKEY_CURRENT_USER;
    call.Say(key, name, number, text);
    const auto getNumber = [&] { call.Say("number", R::GetIntValue(root, key, name, -1)); };
    MakeOneOf(call, {[&] { call.Say("exists", R::CheckIfKeyExists(root, key)); },
                     [&] { call.Say("text", R::GetStringValue(root, key, name, "none")); },
                     [&] { call.Say("expanded", R::GetExpandedStringValue(root, key, name, "none")); },
                     [&] { call.Say("flag", R::GetBoolValue(root, key, name, true)); },
                     [&] { call.Say("set text", R::SetStringValue(root, key, name, text)); },
                     [&] { call.Say("set flag", R::SetBoolValue(root, key, name, number > 0)); },
                     [&] { call.Say("set number", R::SetIntValue(root, key, name, number)); }, getNumber, getNumber});
}

template<auto Enumerate>
void List(Call& call, HKEY key)
{
    std::set<std::string> found;
    char name[300];
    DWORD size = sizeof name;
    for (DWORD i = 0; Enumerate(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS; ++i)
    {
        found.emplace(name, size);
        size = sizeof name;
    }
    call.Say("list");
    for (const std::string& item : found)
        call.Say(item);
}

void UseHandle(Call& call, World& world)
{
    constexpr DWORD types[] = {REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_MULTI_SZ, REG_QWORD, 5, 77};
    constexpr REGSAM rights[] = {KEY_READ, KEY_WRITE, KEY_ALL_ACCESS, KEY_QUERY_VALUE};
    const std::size_t slot = call.Below(4), target = call.Below(4);
    const std::string path = call.OneOf(KeyNames), name = call.OneOf(ValueNames);
    const std::string data = call.SomeOf(Bytes, 3) + std::string(call.Below(3), '\0');
    const REGSAM access = rights[call.Below(4)];
    DWORD type = types[call.Below(std::size(types))], disposition = 0;
    char buffer[16] = "";
    auto size = static_cast<DWORD>(call.Below(sizeof buffer + 1));
    const HKEY key = world.handles[slot];
    HKEY result = nullptr;
    call.Say(slot, target, path, name, access, type, size, data);
    if (!key)
    {
        call.Say("top", ::RegCreateKeyExA(HKEY_CURRENT_USER, "Transcript", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                          &world.handles[slot], nullptr));
        return;
    }
    const auto create = [&]
    {
        call.Say("create", ::RegCreateKeyExA(key, path.c_str(), 0, nullptr, 0, access, nullptr, &result, &disposition));
        call.Say(result ? disposition : 0);
    };
    const auto query = [&]
    {
        const LSTATUS status =
            ::RegQueryValueExA(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size);
        call.Say("query", status);
        if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA)
            call.Say(type, size, std::string_view{buffer, status == ERROR_SUCCESS ? size : 0});
    };
    const auto set = [&]
    {
        const auto* const bytes = reinterpret_cast<const BYTE*>(data.c_str());
        call.Say("set", ::RegSetValueExA(key, name.c_str(), 0, type, bytes, static_cast<DWORD>(data.size())));
    };
    MakeOneOf(call,
              {create, [&] { call.Say("open", ::RegOpenKeyExA(key, path.c_str(), 0, access, &result)); }, query,
               [&] { call.Say("delete value", ::RegDeleteValueA(key, name.c_str())); },
               [&] { call.Say("delete tree", ::RegDeleteTreeA(key, path.c_str())); },
               [&] { List<&::RegEnumKeyExA>(call, key); }, [&] { List<&::RegEnumValueA>(call, key); }, set, set, set});
    if (result)
        ::RegCloseKey(std::exchange(world.handles[target], result));
}

void ReadIni(Call& call, World& world)
{
    constexpr const char* pieces[] = {"[A]",      "[a]", "[B",          "]",  "\n", "\r\n", "\r",
                                      "k",        "K=",  "=",           "1",  "0",  "-2",   "true",
                                      "1.5e3",    ";",   "#",           " ",  "\t", "\"",   "\xEF\xBB\xBF",
                                      "\xC3\xA9", "nan", "99999999999", "\\", "A"};
    constexpr const char* names[] = {"A", "a", "B", "", "k", "K", "1"};
    const std::string text = call.SomeOf(pieces, 25), section = call.OneOf(names), key = call.OneOf(names);
    const bool isWhole = call.Below(2) != 0;
    call.Say(text, section, key, isWhole, "->");
    const fs::path file = world.root + "t.ini";
    WriteFile(file, text);
    IniReader reader;
    call.Say(isWhole ? reader.LoadFile(file.wstring()) : reader.LoadSection(file.wstring(), section));
    std::vector<std::string> sections;
    call.Say(reader.GetSectionList(sections));
    for (const std::string& found : sections)
        call.Say(found);
    std::vector<IniKeyValue> pairs;
    call.Say(reader.GetKeyValuePairListBySection(section, pairs));
    for (const IniKeyValue& pair : pairs)
        call.Say(pair.Key, pair.Value);
    call.Say(reader.GetStringValue(section, key, "none"), reader.GetBoolValue(section, key, true));
    call.Say(reader.GetIntegerValue(section, key, 7)); // the first that may throw
    call.Say(reader.GetFloatValue(section, key, 7));
}

void ConvertPath(Call& call, World&)
{
    constexpr const char* starts[] = {"", "C:", "c:\\", "C:/", "\\\\server\\share", "\\\\server", "\\\\?\\C:\\", "x"};
    constexpr const char* pieces[] = {"\\", "/", ".", "..", "a", "B.c", "\\..\\", " ", ".d", "\xC3\x89"};
    const std::string start = call.OneOf(starts), text = start + call.SomeOf(pieces, 7), more = call.SomeOf(pieces, 2);
    call.Say(text, more, "->");
    if (start.empty() && (text.starts_with('\\') || text.starts_with('/')))
        return call.Say("left out");
    QnFileName path;
    path.SetNameUtf8(text.c_str());
    const std::wstring wide = path.GetName();
    WString fixed;
    call.Say(path.IsAbsolutePath(), static_cast<int>(QnFileName::FixPathName(fixed, wide.c_str())), fixed);
    call.Say(QnFileName::GetDirectoryName(wide.c_str()), QnFileName::GetFileNameWithoutExtension(wide.c_str()));
    for (const auto part : {QnFileName::Device, QnFileName::Directory, QnFileName::BaseName, QnFileName::Extension})
        call.Say(QnFileName{part, wide.c_str()}.GetNameUtf8());
    QnFileName component;
    component.SetNameUtf8(more.c_str());
    path.AppendToPath(component.GetName()).AppendSeparator();
    call.Say(path.GetNameUtf8());
}

void ConvertText(Call& call, World&)
{
    constexpr const char* pieces[] = {"1", "22",       ".",    "00", "-",  "+",  " ",  "x", ",",
                                      "=", "\xC3\xA9", "\xFF", "0x", "e9", "\t", "\n", ";"};
    std::string text = call.SomeOf(pieces, 6), copy = text;
    const std::string other = call.SomeOf(pieces, 6);
    call.Say(text, other, "->");
    WString wide;
    call.Say(static_cast<int>(QnStringUtilities::Utf8ToWChar(wide, text.c_str())), wide);
    call.Say(QnStringUtilities::Wtoi(wide.c_str()), VersionConfig::CompareVersions(text, other));
    std::vector<Utf8String> parts;
    QnStringUtilities::Split(text.c_str(), other.c_str(), nullptr, parts);
    for (const Utf8String& part : parts)
        call.Say(part);
    call.Say(FormatFloatToString(static_cast<float>(call.Below(100'000)) / 64, static_cast<int>(call.Below(5))));
    call.Say(TrimString(copy, other), LeftOf(text, call.Below(5)), RightOf(text, call.Below(5)));
}

void PutInState(Call& call, const fs::path& path)
{
    const std::size_t state = call.Below(5);
    call.Say(state);
    fs::remove_all(path);
    if (state == 1)
        fs::create_directories(path);
    else if (state > 1)
        WriteFile(path, state == 2 ? "" : "content");
}

void ProvideFile(Call& call, World& world)
{
    const fs::path installed = world.root + "Default.ini", folder = world.root + "user";
    PutInState(call, installed);
    if (fs::remove_all(folder); call.Below(4) == 0)
        WriteFile(folder, "a file in place of the folder");
    else
        PutInState(call, folder / "Own.ini");
    const auto origin = static_cast<UserFile::Origin>(call.Below(2));
    call.Say("->", Provide({(folder / "Own.ini").string(), installed.string(), origin}).length() != 0,
             ReadFile(folder / "Own.ini"));
}

void AskForFeature(Call& call, World& world)
{
    constexpr const char* values[] = {"", "0", "1", "2", "-1", " 1", "1x", "x", "99999999999", "0x1"};
    constexpr const char* flags[] = {"FPRO_FEATURE_REVULYTICS", "FPRO_FEATURE_MASS_MODEL_GENERATOR"};
    const std::string name = call.OneOf(flags), value = call.OneOf(values);
    const auto id = static_cast<int>(call.Below(8)) - 1;
    world.machine.SetEnvironment(name, value);
    call.Say(name, value, id, "->");
    call.Say(DevFeaturesConfig::IsDevFeatureEnabled(static_cast<DevFeatureId>(id)));
}

constexpr void (*Kinds[])(Call&, World&) = {UseHelper,   UseHandle,   UseHandle,   ReadIni,
                                            ConvertPath, ConvertText, ProvideFile, AskForFeature};
} // namespace

int main(int argc, char** argv)
{
    const auto seed = static_cast<unsigned>(std::atoi(argv[1]));
    std::vector<unsigned> numbers(static_cast<std::size_t>(argc > 3 ? 0 : std::atoi(argv[2])));
    std::iota(numbers.begin(), numbers.end(), 1U);
    for (int i = 3; i < argc; ++i)
        numbers.push_back(static_cast<unsigned>(std::atoi(argv[i])));

    World world;
    for (const unsigned number : numbers)
    {
        Call call{seed, number};
        try
        {
            Kinds[call.Below(std::size(Kinds))](call, world);
        }
        catch (const std::exception& failure)
        {
            call.Say("throws", std::string_view{failure.what()});
        }
        std::cout << number << ": " << call.Text() << '\n';
    }
    for (const HKEY handle : world.handles)
        ::RegCloseKey(handle);
}
