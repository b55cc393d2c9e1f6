#include <cstdlib>
#include <exception>
#include <functional>
#include <initializer_list>
#include <iostream>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <Quenlor/QnFileName.h>
#include <Quenlor/QnStringUtilities.h>

#include "CoreUtilities.h"
#include "DevFeaturesConfig.h"
#include "IniReader.h"
#include "RegistryHelper.h"
#include "VersionConfig.h"
#include "configfiles/UserFile.h"
#include "registry/RegistryKey.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// TranscriptProgram SEED: makes the random calls that have the numbers on its standard input, and prints each with its
// answer, which is the same on each system: scripts/transcripts compares them. A call depends on the seed, its number
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
using Texts = std::initializer_list<const char*>;

constexpr Texts KeyNames = {"Key", "Key\\Sub", "key\\sub\\", "Key\\Sub\\Deep", "a/b", "]", "Key\\\\Sub", "\\Key", "."};
constexpr Texts ValueNames = {"", "Name", "NAME", "a\\b", " blank ", "=", "\"quoted\"", "@"};
constexpr Texts Data = {"", "1", "12", "-7", "text", "\xC3\xA9", "%x%", " 3x", "0x10", "99999999999", "\n", "\x1B"};

class Transcript final
{
public:
    void MakeCall(unsigned seed, unsigned number)
    {
        m_random.seed(seed * 1'000'003U + number);
        std::cout << number << ':';
        try
        {
            MakeOneOf({[this] { UseHelper(); }, [this] { UseHandle(); }, [this] { UseHandle(); }, [this] { ReadIni(); },
                       [this] { ConvertPath(); }, [this] { ConvertText(); }, [this] { ProvideFile(); },
                       [this] { AskForFeature(); }});
        }
        catch (const std::exception& failure)
        {
            Say("throws", std::string{failure.what()});
        }
        std::cout << '\n';
    }

private:
    std::size_t Below(std::size_t limit) { return m_random() % limit; }

    template<typename Item>
    Item OneOf(std::initializer_list<Item> items)
    {
        return std::data(items)[Below(items.size())];
    }

    std::string SomeOf(Texts pieces, std::size_t most)
    {
        std::string text;
        for (std::size_t i = Below(most + 1); i > 0; --i)
            text += OneOf(pieces);
        return text;
    }

    void MakeOneOf(const std::vector<std::function<void()>>& calls) { calls[Below(calls.size())](); }

    /// Literals as they are, everything else as it can be compared.
    template<typename... Parts>
    void Say(const Parts&... parts)
    {
        (Show(parts), ...);
    }

    template<typename Part>
    void Show(const Part& part)
    {
        std::cout << ' ';
        if constexpr (std::is_arithmetic_v<Part>)
            std::cout << std::to_string(part);
        else if constexpr (std::is_convertible_v<Part, const char*>)
            std::cout << part;
        else
        {
            for (const auto unit : std::basic_string{part.c_str(), part.length()})
            {
                const bool isPlain = unit > ' ' && unit < 0x7F && unit != '<';
                std::cout << (isPlain ? std::string(1, static_cast<char>(unit)) : '<' + std::to_string(unit) + '>');
            }
            std::cout << '|';
        }
    }

    void UseHelper()
    {
        using R = RegistryHelper;
        const HKEY root = HKEY_CURRENT_USER;
        const std::string key = std::string{"Transcript\\"} + OneOf(KeyNames), name = OneOf(ValueNames);
        const int number = static_cast<int>(Below(2000)) - 1000;
        const std::string text = SomeOf(Data, 2);
        Say(key, name, number, text);
        MakeOneOf({[&] { Say("exists", R::CheckIfKeyExists(root, key)); },
                   [&] { Say("text", R::GetStringValue(root, key, name, "none")); },
                   [&] { Say("expanded", R::GetExpandedStringValue(root, key, name, "none")); },
                   [&] { Say("flag", R::GetBoolValue(root, key, name, true)); },
                   [&] { Say("number", R::GetIntValue(root, key, name, -1)); },
                   [&] { Say("set text", R::SetStringValue(root, key, name, text)); },
                   [&] { Say("set flag", R::SetBoolValue(root, key, name, number > 0)); },
                   [&] { Say("set number", R::SetIntValue(root, key, name, number)); }});
    }

    void UseHandle()
    {
        RegistryKey& slot = m_handles[Below(4)];
        const HKEY key = slot ? slot.get() : HKEY_CURRENT_USER;
        const std::string path = slot ? OneOf(KeyNames) : "Transcript", name = OneOf(ValueNames);
        const std::string data = SomeOf(Data, 3) + std::string(Below(3), '\0');
        const auto access = OneOf<REGSAM>({KEY_READ, KEY_WRITE, KEY_ALL_ACCESS, KEY_ALL_ACCESS});
        auto type = OneOf<DWORD>({REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_MULTI_SZ, REG_QWORD, 77});
        BYTE buffer[16];
        auto size = static_cast<DWORD>(Below(17));
        HKEY result = nullptr;
        Say(path, name, access, type, size, data);
        const auto create = [&]
        { Say("create", ::RegCreateKeyExA(key, path.c_str(), 0, nullptr, 0, access, nullptr, &result, nullptr)); };
        const auto query = [&]
        {
            const LSTATUS status = ::RegQueryValueExA(key, name.c_str(), nullptr, &type, buffer, &size);
            Say("query", status);
            if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA)
                Say(type, size, std::string(buffer, buffer + (status == ERROR_SUCCESS ? size : 0)));
        };
        const auto set = [&]
        {
            const auto* const bytes = reinterpret_cast<const BYTE*>(data.c_str());
            Say("set", ::RegSetValueExA(key, name.c_str(), 0, type, bytes, static_cast<DWORD>(data.size())));
        };
        if (!slot)
            create();
        else
            MakeOneOf({create, query, set, set, set, [&] { slot.reset(); },
                       [&] { Say("open", ::RegOpenKeyExA(key, path.c_str(), 0, access, &result)); },
                       [&] { Say("delete value", ::RegDeleteValueA(key, name.c_str())); },
                       [&] { Say("delete tree", ::RegDeleteTreeA(key, path.c_str())); },
                       [&] { List<&::RegEnumKeyExA>(key); }, [&] { List<&::RegEnumValueA>(key); }});
        if (result)
            m_handles[Below(4)].reset(result);
    }

    template<auto Enumerate>
    void List(HKEY key)
    {
        std::set<std::string> found;
        char name[300];
        DWORD size = sizeof name, i = 0;
        for (; Enumerate(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == 0; ++i, size = sizeof name)
            found.insert(name);
        Say("list");
        for (const std::string& item : found)
            Say(item);
    }

    void ReadIni()
    {
        static constexpr Texts names = {"A", "a", "B", "", "k", "K", "1"};
        static constexpr Texts pieces = {"[A]", "[a]", "[B", "]",  "\n", "\n",           "\r\n",     "\r",
                                         "k",   "K=",  "=",  "1",  "0",  "-2",           "true",     "1.5e3",
                                         ";",   "#",   " ",  "\t", "\"", "\xEF\xBB\xBF", "\xC3\xA9", "99999999999"};
        const std::string text = SomeOf(pieces, 25), section = OneOf(names), key = OneOf(names);
        const bool isWhole = Below(2) != 0;
        Say(text, section, key, isWhole, "->");
        WriteFile(m_root + "t.ini", text);
        IniReader reader;
        Say(isWhole ? reader.LoadFile(m_root + "t.ini") : reader.LoadSection(m_root + "t.ini", section));
        std::vector<std::string> sections;
        Say(reader.GetSectionList(sections));
        for (const std::string& found : sections)
            Say(found);
        std::vector<IniKeyValue> pairs;
        Say(reader.GetKeyValuePairListBySection(section, pairs));
        for (const IniKeyValue& pair : pairs)
            Say(pair.Key, pair.Value);
        Say(reader.GetStringValue(section, key, "none"), reader.GetBoolValue(section, key, true));
        Say(reader.GetIntegerValue(section, key, 7)); // the first that may throw
        Say(reader.GetFloatValue(section, key, 7));
    }

    void ConvertPath()
    {
        static constexpr Texts pieces = {"\\", "/", ".", "..", "a", "B.c", "\\..\\", " ", ".d", "\xC3\x89"};
        const std::string text =
            OneOf({"C:", "c:\\", "C:/", R"(\\server\share)", R"(\\server)", R"(\\?\C:\)", "x"}) + SomeOf(pieces, 7);
        const std::string more = SomeOf(pieces, 2);
        Say(text, more, "->");
        QnFileName path{Utf8String{text}};
        const std::wstring wide = path.GetName();
        WString fixed;
        Say(path.IsAbsolutePath(), static_cast<int>(QnFileName::FixPathName(fixed, wide.c_str())), fixed);
        Say(QnFileName::GetDirectoryName(wide.c_str()), QnFileName::GetFileNameWithoutExtension(wide.c_str()));
        for (const auto part : {QnFileName::Device, QnFileName::Directory, QnFileName::BaseName, QnFileName::Extension})
            Say(QnFileName{part, wide.c_str()}.GetNameUtf8());
        path.AppendToPath(QnFileName{Utf8String{more}}.GetName()).AppendSeparator();
        Say(path.GetNameUtf8());
    }

    void ConvertText()
    {
        static constexpr Texts pieces = {"1", "22", ".",        "00",   "-",  "+",  " ",
                                         "x", "=",  "\xC3\xA9", "\xFF", "0x", "\t", ";"};
        std::string text = SomeOf(pieces, 6), copy = text;
        const std::string other = SomeOf(pieces, 6);
        Say(text, other, "->");
        WString wide;
        Say(static_cast<int>(QnStringUtilities::Utf8ToWChar(wide, text.c_str())), wide);
        Say(QnStringUtilities::Wtoi(wide.c_str()), VersionConfig::CompareVersions(text, other));
        std::vector<Utf8String> parts;
        QnStringUtilities::Split(text.c_str(), other.c_str(), nullptr, parts);
        for (const Utf8String& part : parts)
            Say(part);
        Say(FormatFloatToString(static_cast<float>(Below(100'000)) / 64, static_cast<int>(Below(5))));
        Say(TrimString(copy, other), LeftOf(text, Below(5)), RightOf(text, Below(5)));
    }

    void ProvideFile()
    {
        const fs::path installed = m_root + "Default.ini", folder = m_root + "user", copy = folder / "Own.ini";
        fs::remove_all(folder);
        for (const fs::path& path : {installed, Below(3) == 0 ? folder : copy})
        {
            const std::size_t state = Below(4); // missing, a folder, an empty file, a file
            Say(path.filename().string(), state);
            fs::remove_all(path);
            if (state == 1)
                fs::create_directories(path);
            else if (state > 1)
                WriteFile(path, path.filename().string().substr(0, state - 2));
        }
        Say("->", Provide({copy.string(), installed.string()}).empty(), ReadFile(copy));
    }

    void AskForFeature()
    {
        const std::string name = OneOf({"FPRO_FEATURE_REVULYTICS", "FPRO_FEATURE_MASS_MODEL_GENERATOR"});
        const std::string value = OneOf({"", "0", "1", "2", "-1", " 1", "1x", "x", "99999999999", "0x1"});
        const int id = static_cast<int>(Below(8)) - 1;
        m_machine.SetEnvironment(name, value);
        Say(name, value, id, "->", DevFeaturesConfig::IsDevFeatureEnabled(static_cast<DevFeatureId>(id)));
    }

    std::mt19937 m_random;
    const ScratchMachine m_machine;
    const std::string m_root = NativePath(m_machine.Folder("Files")).string();
    RegistryKey m_handles[4];
};
} // namespace

int main(int, char** argv)
{
    Transcript transcript;
    for (unsigned number = 0; std::cin >> number;)
        transcript.MakeCall(static_cast<unsigned>(std::atoi(argv[1])), number);
}
