#include "Masking.h"

#include <algorithm>
#include <cctype>

#include "CoreUtilities.h"
#include "RegistryHelper.h"
#include "UserSettingsConfig.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
/// Of ASCII and of the letters with accents that share a lead byte with it in UTF-8, so that lengths stay.
std::string Lower(std::string_view text)
{
    std::string lower{text};
    for (std::size_t i = 0; i < lower.length(); ++i)
    {
        const auto byte = static_cast<unsigned char>(lower[i]);
        const bool isCapital = (byte >= 'A' && byte <= 'Z') ||
                               (i > 0 && lower[i - 1] == '\xC3' && byte >= 0x80 && byte <= 0x9E && byte != 0x97);
        if (isCapital)
            lower[i] = static_cast<char>(byte + 0x20);
    }
    return lower;
}

bool IsWordCharacter(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return std::isalnum(byte) != 0 || byte == '_' || byte >= 0x80; // letters beyond ASCII are several such bytes
}

/// Whether a stored text says nothing of a person or a project by its form.
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

/// The names of folders of this user's; they are part of many paths.
std::vector<std::string> Accounts()
{
    std::vector<std::string> accounts;
    for (const char* const name : {"USER", "LOGNAME", "USERNAME"})
        accounts.push_back(GetEnvironmentVariableValue(name));
    for (const char* const name : {"HOME", "USERPROFILE"})
    {
        std::string home = GetEnvironmentVariableValue(name);
        home.erase(home.find_last_not_of("/\\") + 1);
        accounts.push_back(home.substr(home.find_last_of("/\\") + 1));
    }
    for (const char* const name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "LOCALAPPDATA", "QUENLOR_REGISTRY_DIR"})
    {
        const std::string folder = GetEnvironmentVariableValue(name);
        for (const std::string_view parent : {"/home/", "\\users\\", "/users/"})
        {
            const std::size_t at = Lower(folder).find(parent);
            const std::size_t start = at == std::string::npos ? folder.length() : at + parent.length();
            accounts.push_back(folder.substr(start, folder.find_first_of("/\\", start) - start));
        }
    }
    std::erase(accounts, "root"); // says nothing, and is a word of many answers
    return accounts;
}
} // namespace

Masking::Masking(const std::vector<Answer>& answers)
{
    Add(UserSettingsConfig::GetUserNameString().ToStdString(), "<user name>");
    Add(UserSettingsConfig::GetUserEmail().ToStdString(), "<e-mail address>");
    Add(UserSettingsConfig::GetDefaultConnectedProjectId().ToStdString(), "<project id>");
    Add(UserSettingsConfig::GetDefaultConnectedProjectName().ToStdString(), "<project name>");
    for (const std::string& account : Accounts())
        Add(account, "<account>");
    for (const LanguageChoice& place : LanguageChoices) // not asked for while a variable hides them
    {
        const std::string choice =
            RegistryHelper::GetStringValue(place.root, LanguageChoiceKey(), place.name, {}).ToStdString();
        if (!IsHarmless(choice))
            Add(choice, "<text>");
    }
    for (const Answer& answer : answers)
    {
        for (const Source& source : answer.trace)
        {
            const bool isStored =
                source.kind == Source::Kind::RegistryValue || source.kind == Source::Kind::Environment;
            const std::string_view all = isStored && source.held ? std::string_view{*source.held} : std::string_view{};
            for (std::string_view held = all; !held.empty();)
            {
                const std::string_view text = held.substr(0, held.find('\0'));
                if (!IsHarmless(text))
                    Add(text, "<text>");
                held.remove_prefix(std::min(text.length() + 1, held.length()));
            }
        }
    }
    // Stable: of two equal ones the first says more.
    std::ranges::stable_sort(m_personal, std::ranges::greater{},
                             [](const Personal& personal) { return personal.text.length(); });
}

void Masking::Add(std::string_view text, const char* placeholder)
{
    const std::string lower = Lower(text);
    if (!lower.empty() && std::ranges::find(m_personal, lower, &Personal::text) == m_personal.end())
        m_personal.push_back({lower, placeholder});
}

std::string Masking::Apply(std::string_view text) const
{
    const std::string lower = Lower(text);
    std::string result;
    for (std::size_t at = 0; at < text.length();)
    {
        const auto isHere = [&](const Personal& personal)
        {
            const std::size_t length = personal.text.length();
            const auto isBoundary = [&](std::size_t place) {
                return place == 0 || place == text.length() || !IsWordCharacter(text[place - 1]) ||
                       !IsWordCharacter(text[place]);
            };
            constexpr std::size_t longestWord = 8; // what is longer is not part of a word by chance
            return lower.compare(at, length, personal.text) == 0 &&
                   (length > longestWord || (isBoundary(at) && isBoundary(at + length)));
        };
        const auto found = std::ranges::find_if(m_personal, isHere);
        if (found == m_personal.end())
            result += text[at++];
        else
        {
            result += found->placeholder;
            at += found->text.length();
        }
    }
    return result;
}
} // namespace FraxoInfo
