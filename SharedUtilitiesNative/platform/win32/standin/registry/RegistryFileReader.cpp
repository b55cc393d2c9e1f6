#include "registry/RegistryFileReader.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <system_error>

#include "registry/RegistryPath.h"
#include "registry/RegistryText.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view Utf16LeMark = "\xFF\xFE";
constexpr std::string_view Blanks = " \t";

void SkipBlanks(std::string_view& text) noexcept
{
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
}

bool SkipPrefix(std::string_view& text, std::string_view prefix) noexcept
{
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

bool IsCommentOrEmpty(std::string_view text) noexcept
{
    SkipBlanks(text);
    return text.empty() || text.front() == ';';
}

/// Takes a hexadecimal number off `text`; nothing when it has no digit or more than `maxDigits`.
std::optional<DWORD> TakeHexNumber(std::string_view& text, std::size_t maxDigits) noexcept
{
    DWORD number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    const auto digits = static_cast<std::size_t>(end - text.data());
    if (error != std::errc{} || digits > maxDigits)
        return {};
    text.remove_prefix(digits);
    return number;
}

/// Takes a text in quotes off `text`, which starts after the opening quote. @return false without a closing one.
bool TakeQuoted(std::string_view& text, std::string& unescaped)
{
    unescaped.clear();
    for (;;)
    {
        const std::size_t special = text.find_first_of("\\\"");
        if (special == std::string_view::npos)
            return false;
        unescaped.append(text, 0, special);
        const bool isQuote = text[special] == '"'; // cppcheck-suppress containerOutOfBounds
        text.remove_prefix(special + 1);
        if (isQuote)
            return true;
        if (text.empty())
            return false;
        unescaped += text.front(); // whatever it is: an unknown escape keeps its character
        text.remove_prefix(1);
    }
}

enum class HexListEnd
{
    Complete,
    Continued, ///< A backslash at the line's end, after a comma or instead of the first byte.
    Malformed
};

/// Appends the bytes of one line.
HexListEnd ReadHexList(std::string_view text, std::string& bytes)
{
    for (;;)
    {
        SkipBlanks(text);
        if (IsCommentOrEmpty(text))
            return HexListEnd::Complete; // a comma after the last byte does no harm
        if (text.front() == '\\')
            return IsCommentOrEmpty(text.substr(1)) ? HexListEnd::Continued : HexListEnd::Malformed;
        const std::optional<DWORD> byte = TakeHexNumber(text, 2);
        if (!byte)
            return HexListEnd::Malformed;
        bytes += static_cast<char>(*byte);
        if (IsCommentOrEmpty(text))
            return HexListEnd::Complete;
        if (!SkipPrefix(text, ","))
            return HexListEnd::Malformed;
    }
}

class Reader final
{
public:
    Reader(std::string_view text, RegistryFileUse use, const TreeOf& treeOf) noexcept
        : m_rest{text}, m_use{use}, m_treeOf{treeOf}
    {
    }

    RegistryFileResult Read()
    {
        std::string_view line;
        m_result.isRegistryFile = NextLine(line) && ReadHeader(line);
        if (!m_result.isRegistryFile)
            return std::move(m_result);
        while (NextLine(line))
        {
            const std::size_t number = m_lineNumber;
            const char* const start = line.data();
            if (const char* const reason = ReadLine(line))
                Report(number, reason, {start, static_cast<std::size_t>(m_lineEnd - start)});
        }
        return std::move(m_result);
    }

private:
    /// Lines end in LF, CRLF, CR or with the text.
    bool NextLine(std::string_view& line) noexcept
    {
        if (m_rest.empty())
            return false;
        const auto isEnd = [](char character) { return character == '\n' || character == '\r'; };
        m_lineEnd = std::find_if(m_rest.data(), m_rest.data() + m_rest.size(), isEnd);
        line = {m_rest.data(), static_cast<std::size_t>(m_lineEnd - m_rest.data())};
        m_rest.remove_prefix(line.size());
        if (!SkipPrefix(m_rest, "\r\n") && !m_rest.empty())
            m_rest.remove_prefix(1);
        ++m_lineNumber;
        return true;
    }

    // The functions below return why the line has to be skipped; null when it has not.

    const char* ReadLine(std::string_view line)
    {
        SkipBlanks(line);
        if (IsCommentOrEmpty(line) || line.front() == '#')
            return nullptr;
        if (line.find('\0') != std::string_view::npos)
            return "a NUL character";
        if (line.front() == '[')
            return ReadKey(line.substr(1));
        if (!m_key)
            return m_keyProblem;
        if (SkipPrefix(line, "@"))
            m_name.clear();
        else if (!SkipPrefix(line, "\""))
            return "neither a key nor a value";
        else if (!TakeQuoted(line, m_name))
            return "a value name without its closing quote";
        SkipBlanks(line);
        if (!SkipPrefix(line, "="))
            return "no = after the value name";
        if (!IsLegalValueName(m_name))
            return "a value name that is too long";
        SkipBlanks(line);
        return ReadData(line);
    }

    const char* ReadKey(std::string_view line)
    {
        SkipKey();
        const bool isDeletion = SkipPrefix(line, "-");
        const std::size_t end = line.rfind(']');
        if (end == std::string_view::npos)
            return "a key without its closing bracket";
        line = line.substr(0, end);
        const std::size_t rootEnd = std::min(line.find('\\'), line.size());
        const HKEY root = RootOfName(line.substr(0, rootEnd));
        if (!root)
            return "an unknown root key";
        std::string path;
        AppendToPath(path, line.substr(rootEnd));
        if (!IsLegalKeyPath(path))
            return "a key name that is too long, or too many levels";
        if (isDeletion)
            m_keyProblem = "a value of a deleted key";
        if (isDeletion && path.empty())
            return "a root key cannot be deleted";
        Key* const tree = m_treeOf(root, path);
        if (!tree)
            return "a key of another root";
        if (isDeletion)
            tree->Delete(path);
        else
            m_key = &tree->Create(path);
        return nullptr;
    }

    const char* ReadData(std::string_view data)
    {
        if (SkipPrefix(data, "-"))
        {
            if (!IsCommentOrEmpty(data))
                return "something after the deletion of a value";
            m_key->DeleteValue(m_name);
            return nullptr;
        }
        m_data.clear();
        DWORD type = REG_SZ;
        const char* reason = "data of an unknown form";
        if (SkipPrefix(data, "\""))
            reason = ReadText(data);
        else if (SkipPrefix(data, "dword:"))
            reason = ReadNumber(data, type);
        else if (SkipPrefix(data, "hex"))
            reason = ReadHex(data, type);
        if (m_use == RegistryFileUse::Import && IsText(type) && !m_data.empty() && m_data.back() != '\0')
            m_data += '\0';
        if (!reason)
            m_key->SetValue(m_name, type, m_data);
        return reason;
    }

    const char* ReadText(std::string_view data)
    {
        if (!TakeQuoted(data, m_data))
            return "text without its closing quote";
        m_data += '\0';
        return IsCommentOrEmpty(data) ? nullptr : "something after the closing quote";
    }

    const char* ReadNumber(std::string_view data, DWORD& type)
    {
        type = REG_DWORD;
        SkipBlanks(data);
        const std::optional<DWORD> number = TakeHexNumber(data, 8);
        if (!number || !IsCommentOrEmpty(data))
            return "a dword that is not 1 to 8 hexadecimal digits";
        m_data.assign(reinterpret_cast<const char*>(&*number), sizeof *number);
        return nullptr;
    }

    const char* ReadHex(std::string_view data, DWORD& type)
    {
        type = REG_BINARY;
        if (SkipPrefix(data, "("))
        {
            const std::optional<DWORD> number = TakeHexNumber(data, 8);
            if (!number || !SkipPrefix(data, ")"))
                return "a malformed type";
            type = *number;
        }
        if (!SkipPrefix(data, ":"))
            return "data of an unknown form";
        HexListEnd end = ReadHexList(data, m_data);
        while (end == HexListEnd::Continued && NextHexLine(data))
        {
            if (const char* const reason = CheckContinuation(data))
                return reason;
            end = ReadHexList(data, m_data);
        }
        if (end == HexListEnd::Malformed)
            return "malformed hexadecimal data";
        if (IsText(type) && m_isUnicode)
            m_data = FromUtf16Le(m_data);
        return nullptr;
    }

    /// The next line that is neither blank nor a comment; false at the end of the file.
    bool NextHexLine(std::string_view& line)
    {
        while (NextLine(line))
        {
            SkipBlanks(line);
            if (!IsCommentOrEmpty(line))
                return true;
        }
        return false;
    }

    /// The line is dropped with the value. Were it a key, the values after it must not go to the key before.
    const char* CheckContinuation(std::string_view line)
    {
        if (TakeHexNumber(line, 2))
            return nullptr;
        if (line.front() == '[')
            SkipKey();
        return "a continuation line without hexadecimal data";
    }

    void SkipKey() noexcept
    {
        m_key = nullptr;
        m_keyProblem = "a value of a key that was skipped";
    }

    bool ReadHeader(std::string_view line) noexcept
    {
        m_isUnicode = line == "Windows Registry Editor Version 5.00";
        return m_isUnicode || line == "REGEDIT4";
    }

    void Report(std::size_t number, const char* reason, std::string_view lines)
    {
        if (m_result.problemCount++ < MaxProblems)
        {
            m_result.problems.push_back({number, reason, std::string{lines}});
            m_result.skipped += "; line " + std::to_string(number) + ": " + reason + '\n';
        }
        m_result.skipped.append(lines).append("\n");
    }

    std::string_view m_rest;
    const char* m_lineEnd = nullptr; // of the last line
    std::size_t m_lineNumber = 0;    // of the last line
    const RegistryFileUse m_use;
    const TreeOf& m_treeOf;
    RegistryFileResult m_result;
    bool m_isUnicode = false; // hexadecimal text consists of UTF-16 units
    Key* m_key = nullptr;     // of the values that follow
    const char* m_keyProblem = "a value before the first key";
    std::string m_name;
    std::string m_data;
};
} // namespace

RegistryFileResult ReadRegistryFile(std::string_view content, RegistryFileUse use, const TreeOf& treeOf)
{
    if (SkipPrefix(content, Utf16LeMark))
        return Reader{FromUtf16Le(content), use, treeOf}.Read();
    SkipPrefix(content, Utf8Mark);
    return Reader{content, use, treeOf}.Read();
}

RegistryFileResult ReadRegistryFile(std::string_view content, HKEY root, Key& tree)
{
    return ReadRegistryFile(content, RegistryFileUse::Hive,
                            [&](HKEY ofKey, const std::string&) { return ofKey == root ? &tree : nullptr; });
}
} // namespace Quenlor::StandIn::Registry
