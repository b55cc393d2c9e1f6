#include "ValueText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <utility>

#include <fmt/format.h>

#include "Operations.h"
#include "registry/RegistryText.h"

namespace FraxoReg
{
namespace
{
constexpr std::pair<std::string_view, DWORD> TypeNames[] = {
    {"REG_SZ", REG_SZ},       {"REG_MULTI_SZ", REG_MULTI_SZ}, {"REG_EXPAND_SZ", REG_EXPAND_SZ},
    {"REG_DWORD", REG_DWORD}, {"REG_QWORD", REG_QWORD},       {"REG_BINARY", REG_BINARY},
    {"REG_NONE", REG_NONE},
};

std::string HexNumber(std::string_view littleEndian)
{
    std::uint64_t number = 0;
    for (std::size_t i = littleEndian.size(); i-- > 0;)
        number = number << 8 | static_cast<unsigned char>(littleEndian[i]);
    return fmt::format("{:#x}", number);
}

std::string HexBytes(std::string_view data)
{
    std::string text;
    for (const char character : data)
        text += fmt::format("{:02X}", static_cast<unsigned char>(character));
    return text;
}

std::string JoinTexts(std::string_view data, std::string_view separator)
{
    std::string joined;
    for (const char& character : data.substr(0, data.find_last_not_of('\0') + 1))
        joined += character == '\0' ? separator : std::string_view{&character, 1};
    return joined;
}

/// Decimal, even with zeros before it, or hexadecimal after `0x`.
std::string ParseNumber(std::string_view text, std::size_t size)
{
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data() + (isHex ? 2 : 0), end, number, isHex ? 16 : 10);
    const std::uint64_t most = std::numeric_limits<std::uint64_t>::max() >> (64 - 8 * size);
    if (error != std::errc{} || rest != end || number > most)
        throw InvalidSyntax("'" + std::string{text} + "' is not a number of this type.");
    std::string data;
    for (std::size_t i = 0; i < size; ++i)
        data += static_cast<char>(number >> (8 * i) & 0xFF);
    return data;
}

/// An odd number of digits gets a zero before it.
std::string ParseBytes(const std::string& text)
{
    const std::string digits = (text.size() % 2 != 0 ? "0" : "") + text;
    std::string data;
    for (std::size_t i = 0; i < digits.size(); i += 2)
    {
        unsigned char byte = 0;
        const char* const start = digits.data() + i;
        if (std::from_chars(start, start + 2, byte, 16).ptr != start + 2)
            throw InvalidSyntax("'" + text + "' has other characters than hexadecimal digits.");
        data += static_cast<char>(byte);
    }
    return data;
}

std::string SplitTexts(std::string_view text, std::string_view separator)
{
    std::string data;
    for (std::string_view rest = text; !rest.empty();)
    {
        const std::size_t end = std::min(rest.find(separator), rest.size());
        // An empty text would end the list for every reader. One separator at the end, or nothing else, does no harm.
        if (end == 0 && (rest != separator || !data.empty()))
            throw InvalidSyntax("'" + std::string{text} + "' is not a list: it has an empty string.");
        if (end != 0)
            data.append(rest, 0, end).append(1, '\0');
        rest.remove_prefix(std::min(end + separator.size(), rest.size()));
    }
    return data + '\0';
}
} // namespace

std::string SeparatorOf(const Arguments& arguments, std::string_view switchName)
{
    const std::string separator = arguments.Text(switchName).value_or(R"(\0)");
    if (arguments.Has(switchName) && Quenlor::StandIn::Registry::Utf16Length(separator) != 1)
        throw InvalidSyntax("'" + separator + "' is not one character.");
    return separator;
}

DWORD TypeOfName(std::string_view name)
{
    for (const auto& [known, type] : TypeNames)
    {
        if (EqualIgnoringCase(known, name))
            return type;
    }
    throw InvalidSyntax("'" + std::string{name} + "' is not a type.");
}

std::string NameOfType(DWORD type)
{
    const auto* const found = std::ranges::find(TypeNames, type, &std::pair<std::string_view, DWORD>::second);
    return found == std::end(TypeNames) ? fmt::format("{:#x}", type) : std::string{found->first};
}

std::string FormatData(DWORD type, std::string_view data, std::string_view separator)
{
    if (type == REG_SZ || type == REG_EXPAND_SZ)
        return std::string{data.substr(0, data.find('\0'))};
    if (type == REG_MULTI_SZ)
        return JoinTexts(data, separator);
    const bool isNumber = (type == REG_DWORD && data.size() == sizeof(DWORD)) ||
                          (type == REG_QWORD && data.size() == sizeof(std::uint64_t));
    return isNumber ? HexNumber(data) : HexBytes(data);
}

std::string ParseData(DWORD type, const std::string& text, std::string_view separator)
{
    if (type == REG_DWORD || type == REG_QWORD)
        return ParseNumber(text, type == REG_DWORD ? sizeof(DWORD) : sizeof(std::uint64_t));
    if (type == REG_BINARY)
        return ParseBytes(text);
    if (type == REG_MULTI_SZ)
        return SplitTexts(text, separator);
    // REG_NONE is UTF-16 as on Windows, where only the text types are converted.
    return type == REG_NONE ? Quenlor::StandIn::Registry::ToUtf16Le(text + '\0') : text + '\0';
}
} // namespace FraxoReg
