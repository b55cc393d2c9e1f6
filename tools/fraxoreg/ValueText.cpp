#include "ValueText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>

#include "Arguments.h"
#include "Failure.h"
#include "registry/RegistryText.h"

namespace FraxoReg
{
namespace
{
constexpr DWORD BigEndianNumber = 5;

struct TypeName
{
    std::string_view name;
    DWORD type;
    bool canBeTyped = true;
};

constexpr TypeName TypeNames[] = {
    {"REG_SZ", REG_SZ},
    {"REG_MULTI_SZ", REG_MULTI_SZ},
    {"REG_EXPAND_SZ", REG_EXPAND_SZ},
    {"REG_DWORD", REG_DWORD},
    {"REG_DWORD_LITTLE_ENDIAN", REG_DWORD},
    {"REG_DWORD_BIG_ENDIAN", BigEndianNumber},
    {"REG_QWORD", REG_QWORD},
    {"REG_QWORD_LITTLE_ENDIAN", REG_QWORD},
    {"REG_BINARY", REG_BINARY},
    {"REG_NONE", REG_NONE},
    {"REG_LINK", 6, false},
    {"REG_RESOURCE_LIST", 8, false},
    {"REG_FULL_RESOURCE_DESCRIPTOR", 9, false},
    {"REG_RESOURCE_REQUIREMENTS_LIST", 10, false},
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
    data = data.substr(0, data.find_last_not_of('\0') + 1);
    std::string joined;
    for (const char character : data)
    {
        if (character == '\0')
            joined += separator;
        else
            joined += character;
    }
    return joined;
}

/// Decimal, also with zeros before it, or hexadecimal behind `0x`.
std::string ParseNumber(const std::optional<std::string>& text, std::size_t size)
{
    std::string_view digits = text ? std::string_view{*text} : std::string_view{};
    const bool isHex = digits.starts_with("0x") || digits.starts_with("0X");
    if (isHex)
        digits.remove_prefix(2);
    std::uint64_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, number, isHex ? 16 : 10);
    const std::uint64_t most = std::numeric_limits<std::uint64_t>::max() >> (64 - 8 * size);
    if (error != std::errc{} || rest != end || number > most)
        throw InvalidSyntax("Specify valid numeric value for '/d'.");
    std::string data;
    for (std::size_t i = 0; i < size; ++i)
        data += static_cast<char>(number >> (8 * i) & 0xFF);
    return data;
}

/// An odd number of digits stands for one with a zero before it.
std::string ParseBytes(std::string digits)
{
    if (digits.size() % 2 != 0)
        digits.insert(0, 1, '0');
    std::string data;
    for (std::size_t i = 0; i < digits.size(); i += 2)
    {
        unsigned char byte = 0;
        const char* const start = digits.data() + i;
        if (std::from_chars(start, start + 2, byte, 16).ptr != start + 2)
            throw InvalidSyntax("Specify valid hexadecimal digits for '/d'.");
        data += static_cast<char>(byte);
    }
    return data;
}

std::string SplitTexts(std::string_view text, std::string_view separator)
{
    std::string data;
    while (!text.empty())
    {
        const std::size_t end = std::min(text.find(separator), text.size());
        // An empty text would end the list for every reader. One separator at the end, or alone, does no harm.
        if (end == 0 && (text != separator || !data.empty()))
            throw InvalidSyntax("Specify no empty string within '/d'.");
        if (end != 0)
            data.append(text, 0, end).append(1, '\0');
        text.remove_prefix(std::min(end + separator.size(), text.size()));
    }
    return data + '\0';
}
} // namespace

std::optional<DWORD> TypeOfName(std::string_view name) noexcept
{
    for (const TypeName& candidate : TypeNames)
    {
        if (candidate.canBeTyped && EqualIgnoringCase(candidate.name, name))
            return candidate.type;
    }
    return {};
}

std::string NameOfType(DWORD type)
{
    const auto* const found = std::find_if(std::begin(TypeNames), std::end(TypeNames),
                                           [type](const TypeName& candidate) { return candidate.type == type; });
    return found == std::end(TypeNames) ? HexNumber(std::uint64_t{type}) : std::string{found->name};
}

std::string FormatData(DWORD type, std::string_view data, std::string_view separator)
{
    switch (type)
    {
    case REG_SZ:
    case REG_EXPAND_SZ:
        return std::string{data.substr(0, data.find('\0'))};
    case REG_MULTI_SZ:
        return JoinTexts(data, separator);
    case REG_DWORD:
    case BigEndianNumber: // in the same order of bytes, as ParseData stores it
        return data.size() == sizeof(DWORD) ? HexNumber(data) : HexBytes(data);
    case REG_QWORD:
        return data.size() == sizeof(std::uint64_t) ? HexNumber(data) : HexBytes(data);
    default:
        return HexBytes(data);
    }
}

std::string ParseData(DWORD type, const std::optional<std::string>& text, std::string_view separator)
{
    switch (type)
    {
    case REG_DWORD:
    case BigEndianNumber: // little-endian too: Windows' tool does not turn the bytes
        return ParseNumber(text, sizeof(DWORD));
    case REG_QWORD:
        return ParseNumber(text, sizeof(std::uint64_t));
    case REG_BINARY:
        return ParseBytes(text.value_or(""));
    case REG_MULTI_SZ:
        return SplitTexts(text.value_or(""), separator);
    case REG_NONE: // UTF-16 text, as on Windows, where only the text types are converted
        return Quenlor::StandIn::Registry::ToUtf16Le(text.value_or("") + '\0');
    default:
        return text.value_or("") + '\0';
    }
}
} // namespace FraxoReg
