#include "registry/RegistryFileWriter.h"

#include <algorithm>
#include <charconv>
#include <utf8.h>

#include "registry/RegistryText.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
constexpr std::size_t LastColumn = 77; // of hexadecimal data, as Windows wraps them

/// Whether the quoted form gives back the same bytes: one final NUL, no other control character, valid UTF-8.
bool CanBeQuoted(const Value& value) noexcept
{
    if (value.type != REG_SZ || value.data.empty() || value.data.back() != '\0')
        return false;
    const std::string_view text{value.data.data(), value.data.size() - 1};
    const auto isControl = [](char character) { return static_cast<unsigned char>(character) < 0x20; };
    return std::none_of(text.begin(), text.end(), isControl) && utf8::is_valid(text.begin(), text.end());
}

class Writer final
{
public:
    explicit Writer(RegistryFileForm form) noexcept
        : m_isHive{form == RegistryFileForm::Hive}, m_lineEnd{m_isHive ? "\n" : "\r\n"}
    {
    }

    std::string Write(const Key& key, std::string path)
    {
        m_text.append("Windows Registry Editor Version 5.00").append(m_lineEnd);
        AppendKey(key, path);
        m_text += m_lineEnd;
        return std::move(m_text);
    }

private:
    void AppendKey(const Key& key, std::string& path)
    {
        // A hive leaves out the keys that a longer path names, so that a deep one costs no more than it did to read.
        if (!m_isHive || !key.Values().empty() || key.SubKeys().empty())
            m_text.append(m_lineEnd).append("[").append(path).append("]").append(m_lineEnd);
        for (const auto& [folded, value] : key.Values())
            AppendValue(value);
        const std::size_t length = path.size();
        for (const auto& [folded, subKey] : key.SubKeys())
        {
            path.append("\\").append(subKey.Name());
            AppendKey(subKey, path);
            path.resize(length);
        }
    }

    void AppendValue(const Value& value)
    {
        const std::size_t start = m_text.size();
        if (value.name.empty())
            m_text += '@';
        else
            AppendQuoted(value.name);
        m_text += '=';
        if (CanBeQuoted(value))
            AppendQuoted({value.data.data(), value.data.size() - 1});
        else if (value.type == REG_DWORD && value.data.size() == sizeof(DWORD))
        {
            m_text += "dword:";
            std::for_each(value.data.rbegin(), value.data.rend(), [this](char byte) { AppendByte(byte); });
        }
        else
        {
            AppendHexType(value.type);
            AppendHexList(IsText(value.type) ? ToUtf16Le(value.data) : value.data, m_text.size() - start);
        }
        m_text += m_lineEnd;
    }

    void AppendQuoted(std::string_view text)
    {
        m_text += '"';
        for (const char character : text)
        {
            if (character == '\\' || character == '"')
                m_text += '\\';
            m_text += character;
        }
        m_text += '"';
    }

    void AppendHexType(DWORD type)
    {
        char digits[8];
        const std::string_view number{digits, std::to_chars(digits, digits + sizeof digits, type, 16).ptr};
        m_text += "hex";
        if (type != REG_BINARY)
            m_text.append("(").append(number).append(")");
        m_text += ':';
    }

    void AppendHexList(std::string_view bytes, std::size_t column)
    {
        for (std::size_t i = 0; i < bytes.size(); ++i)
        {
            if (i != 0)
                m_text += ',';
            if (i != 0 && ++column >= LastColumn)
            {
                m_text.append("\\").append(m_lineEnd).append("  ");
                column = 2;
            }
            AppendByte(bytes[i]);
            column += 2;
        }
    }

    void AppendByte(char byte)
    {
        constexpr char digits[] = "0123456789abcdef";
        m_text += digits[static_cast<unsigned char>(byte) >> 4];
        m_text += digits[static_cast<unsigned char>(byte) & 0xF];
    }

    bool m_isHive;
    std::string_view m_lineEnd;
    std::string m_text;
};
} // namespace

std::string WriteRegistryFile(const Key& key, std::string_view path, RegistryFileForm form)
{
    const std::string text = Writer{form}.Write(key, std::string{path});
    return form == RegistryFileForm::Hive ? text : "\xFF\xFE" + ToUtf16Le(text);
}
} // namespace Quenlor::StandIn::Registry
