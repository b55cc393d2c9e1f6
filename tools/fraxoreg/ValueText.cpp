#include "ValueText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

#include "Operations.h"
#include "registry/RegistryText.h"

namespace FraxoReg
{
namespace
{
struct TypeName
{
    std::string_view name;
    DWORD type;
};

constexpr TypeName TypeNames[] = {
    {"REG_SZ", REG_SZ},       {"REG_MULTI_SZ", REG_MULTI_SZ}, {"REG_EXPAND_SZ", REG_EXPAND_SZ},
    {"REG_DWORD", REG_DWORD}, {"REG_QWORD", REG_QWORD},       {"REG_BINARY", REG_BINARY},
    {"REG_NONE", REG_NONE},
};

std::string HexNumber(std::uint64_t number)
{
    char digits[16];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number, 16);
    return "0x" + std::string(digits, end.ptr);
}

std::string HexNumber(std::string_view littleEndian)
{
    std::uint64_t number = 0;
    for (std::size_t i = littleEndian.size(); i-- > 0;)
        number = number << 8 | static_cast<unsigned char>(littleEndian[i]);
    return HexNumber(number);
}

std::string HexBytes(std::string_view data)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const char character : data)
    {
        const auto byte = static_cast<unsigned char>(character);
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::string JoinTexts(std::string_view data, std::string_view separator)
{
    std::string joined;
    for (const char character : data.substr(0, data.find_last_not_of('\0') + 1))
    {
        if (character == '\0')
            joined += separator;
        else
            joined += character;
    }
    return joined;
}

/// Decimal, even with zeros before it, or hexadecimal after `0x`.
std::string ParseNumber(std::string_view text, std::size_t size)
{
    std::string_view digits = text;
    const bool isHex = digits.starts_with("0x") || digits.starts_with("0X");
    if (isHex)
        digits.remove_prefix(2);
    std::uint64_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, number, isHex ? 16 : 10);
    const std::uint64_t most = std::numeric_limits<std::uint64_t>::max() >> (64 - 8 * size);
    if (error != std::errc{} || rest != end || number > most)
        throw InvalidSyntax("'" + std::string{text} + "' is not a number of this type.");
    std::string data;
    for (std::size_t i = 0; i < size; ++i)
        data += static_cast<char>(number >> (8 * i) & 0xFF);
    return data;
}

/// An odd number of digits stands for one with a zero before it.
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
        // An empty text would end the list for every reader. One separator at the end, or alone, does no harm.
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
    for (const TypeName& candidate : TypeNames)
    {
        if (EqualIgnoringCase(candidate.name, name))
            return candidate.type;
    }
    throw InvalidSyntax("'" + std::string{name} + "' is not a type.");
}

std::string NameOfType(DWORD type)
{
    for (const TypeName& candidate : TypeNames)
    {
        if (candidate.type == type)
            return std::string{candidate.name};
    }
    return HexNumber(std::uint64_t{type});
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
    switch (type)
    {
    case REG_DWORD:
        return ParseNumber(text, sizeof(DWORD));
    case REG_QWORD:
        return ParseNumber(text, sizeof(std::uint64_t));
    case REG_BINARY:
        return ParseBytes(text);
    case REG_MULTI_SZ:
        return SplitTexts(text, separator);
    case REG_NONE: // UTF-16 text, as on Windows, where only the text types are converted
        return Quenlor::StandIn::Registry::ToUtf16Le(text + '\0');
    default:
        return text + '\0';
    }
}
} // namespace FraxoReg
