#include "Masking.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include <nlohmann/json.hpp>

#include "CoreUtilities.h"
#include "RegistryHelper.h"
#include "UserSettingsConfig.h"
#include "common/StoredText.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;
using nlohmann::ordered_json;
using Tools::Lower;

namespace FraxoInfo
{
namespace
{
/// Whether a word starts or ends at this place, or none is there.
bool IsBoundary(std::string_view text, std::size_t place)
{
    const auto isInWord = [](unsigned char byte)
    { return std::isalnum(byte) != 0 || byte == '_' || byte >= 0x80; }; // letters beyond ASCII are several such bytes
    return place == 0 || place == text.length() ||
           !(isInWord(static_cast<unsigned char>(text[place - 1])) &&
             isInWord(static_cast<unsigned char>(text[place])));
}

/// Whether the form of a stored text shows that it says nothing about a person or a project.
bool IsHarmless(std::string_view text)
{
    const bool isRooted =
        text.starts_with('\\') || text.starts_with('/') || (text.length() > 2 && text.substr(1, 2) == ":\\");
    const bool isNumber = text.find_first_not_of("0123456789.:-+/ ") == text.npos;
    const bool isLanguage = text.length() >= 2 && (text.length() == 2 || (text.length() == 5 && text[2] == '-')) &&
                            text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-") == text.npos;
    constexpr std::string_view words[] = {"TRUE", "FALSE", "Dark", "Light"};
    return isRooted || isNumber || isLanguage || text.starts_with("Word.Application.") ||
           std::ranges::count(words, text) != 0;
}

/// The names of this user and of this user's folders, which are part of many paths.
std::vector<std::string> Accounts()
{
    std::vector<std::string> accounts;
    for (const char* const name : {"USER", "LOGNAME", "USERNAME"})
        accounts.push_back(GetEnvironmentVariableValue(name));
    for (const char* const name :
         {"HOME", "USERPROFILE", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "LOCALAPPDATA", "QUENLOR_REGISTRY_DIR"})
    {
        std::string folder = GetEnvironmentVariableValue(name);
        folder.erase(folder.find_last_not_of("/\\") + 1);
        for (const std::string_view parent : {"/home/", "\\users\\", "/users/"})
        {
            const std::size_t at = Lower(folder).find(parent);
            const std::size_t start = at == std::string::npos ? folder.length() : at + parent.length();
            accounts.push_back(folder.substr(start, folder.find_first_of("/\\", start) - start));
        }
        if (std::string_view{name} == "HOME" || std::string_view{name} == "USERPROFILE") // wherever it is
            accounts.push_back(folder.substr(folder.find_last_of("/\\") + 1));
    }
    std::erase(accounts, "root"); // not personal, and a word in many answers
    return accounts;
}
struct Personal
{
    std::string text; // in small letters
    const char* placeholder;
};

/// The longest first.
std::vector<Personal> FindPersonal(const std::vector<Answer>& answers)
{
    std::vector<Personal> personal;
    const auto add = [&](std::string_view text, const char* placeholder)
    {
        const std::string lower = Lower(text);
        if (!lower.empty() && std::ranges::find(personal, lower, &Personal::text) == personal.end())
            personal.push_back({lower, placeholder});
    };
    const auto addStored = [&](const std::string& held) // which may be a list
    {
        std::istringstream texts{held};
        for (std::string text; std::getline(texts, text, '\0');)
        {
            if (!IsHarmless(text))
                add(text, "<text>");
        }
    };
    add(UserSettingsConfig::GetUserNameString(), "<user name>");
    add(UserSettingsConfig::GetUserEmail(), "<e-mail address>");
    add(UserSettingsConfig::GetDefaultConnectedProjectId(), "<project id>");
    add(UserSettingsConfig::GetDefaultConnectedProjectName(), "<project name>");
    for (const std::string& account : Accounts())
        add(account, "<account>");
    for (const LanguageChoice& place : LanguageChoices) // which are not asked while a variable hides them
        addStored(RegistryHelper::GetStringValue(place.root, LanguageChoiceKey(), place.name, {}).ToStdString());
    for (const Answer& answer : answers)
    {
        for (const Source& source : answer.trace)
        {
            if (source.kind == Source::Kind::RegistryValue || source.kind == Source::Kind::Environment)
                addStored(source.held.value_or(""));
        }
    }
    std::ranges::sort(personal, std::ranges::greater{}, [](const Personal& item) { return item.text.length(); });
    return personal;
}

std::string Masked(std::string_view text, const std::vector<Personal>& personal)
{
    const std::string lower = Lower(text);
    std::string result;
    for (std::size_t at = 0; at < text.length();)
    {
        const auto isHere = [&](const Personal& item)
        {
            constexpr std::size_t longestWord = 8; // longer texts are not part of a word by chance
            const std::size_t end = at + item.text.length();
            return lower.compare(at, item.text.length(), item.text) == 0 &&
                   (end - at > longestWord || (IsBoundary(text, at) && IsBoundary(text, end)));
        };
        const auto found = std::ranges::find_if(personal, isHere);
        result += found == personal.end() ? std::string{text[at]} : found->placeholder;
        at += found == personal.end() ? 1 : found->text.length();
    }
    return result;
}

void Mask(ordered_json& json, const std::vector<Personal>& personal)
{
    if (json.is_structured())
    {
        for (ordered_json& element : json)
            Mask(element, personal);
    }
    else if (json.is_string())
        json = Masked(json.get_ref<const std::string&>(), personal);
}
} // namespace

void Mask(ordered_json& report, const std::vector<Answer>& answers)
{
    Mask(report, FindPersonal(answers));
}
} // namespace FraxoInfo
