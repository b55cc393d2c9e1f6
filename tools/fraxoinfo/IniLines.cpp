#include "IniLines.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "ForTools.h"
#include "IniReader.h"
#include "Terminal.h"
#include "common/StoredText.h"

namespace FraxoInfo
{
namespace Ini = Quenlor::Fraxo::SharedUtilities::Native::Ini;
using Quenlor::Fraxo::SharedUtilities::Native::IniReader;
using Tools::Printable;

namespace
{
/// How a header differs from what people expect; empty when it does not.
std::string SurpriseOfHeader(std::string_view line, std::string_view name)
{
    if (line.front() == '[' && line.back() == ']')
        return {};
    return fmt::format(R"({}: read as the header of section "{}")",
                       line.front() == '['           ? "no closing bracket"
                       : line.find('=') == line.npos ? "no opening bracket"
                                                     : "a value that ends in a bracket",
                       name);
}

std::string SurpriseOfValue(const IniLine& line, const IniReader& reader)
{
    if (line.key.empty())
        return R"(no key before the "=")";
    if (reader.GetStringValue(line.section, line.key, line.value) != line.value)
        return "not used: a later line of this section has another value";
    if (line.section.empty())
        return "before the first header: in a section without a name";
    for (const char* const comment : {" ;", "\t;", " #", "\t#"})
    {
        if (line.value.find(comment) != std::string::npos)
            return "the comment is read as part of the value";
    }
    return {};
}

/// Splits a trimmed line into its parts.
void Parse(IniLine& line, std::string_view text, const IniReader& reader)
{
    const std::string_view header = Ini::HeaderName(text);
    line.isDamage = text.find('\0') != text.npos;
    if (line.isDamage)
        line.surprise = "has NUL bytes: is the file UTF-16, or damaged?";
    else if (!header.empty())
    {
        line.section = header;
        line.isHeader = true;
        line.surprise = SurpriseOfHeader(text, header);
        line.isDamage = !line.surprise.empty();
    }
    else if (Ini::IsKeyValue(text))
    {
        line.key = Ini::KeyOf(text);
        line.value = Ini::ValueOf(text);
        line.surprise = SurpriseOfValue(line, reader);
    }
    else
    {
        line.key = text;
        line.surprise = R"(ignored: neither a header nor a key with "=")";
    }
}
} // namespace

std::string ReadWholeFile(const std::filesystem::path& file)
{
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    std::ifstream stream;
    if (is_regular_file(status))
        stream.open(file, std::ios::binary);
    std::ostringstream contents;
    if (stream.peek() != std::ifstream::traits_type::eof())
        contents << stream.rdbuf();
    if (stream.is_open() && !stream.bad() && contents)
        return contents.str();
    throw std::runtime_error(fmt::format("cannot read {}: {}", Printable(file.string()),
                                         !exists(status)            ? "it does not exist"
                                         : !is_regular_file(status) ? "it is not a file"
                                                                    : "check that this user may read it"));
}

std::vector<IniLine> ReadIniLines(const std::filesystem::path& file)
{
    const std::string contents = ReadWholeFile(file);
    IniReader reader;
    reader.LoadFile(file.wstring());
    std::vector<IniLine> lines;
    std::string section;
    std::size_t number = 0;
    for (std::string_view rest = contents; !rest.empty();)
    {
        const std::string_view text = Ini::TakeLine(rest);
        IniLine line{.number = ++number, .section = section, .key = {}, .value = {}, .surprise = {}};
        if (Ini::IsComment(text) && text.find('\0') == text.npos)
            continue;
        Parse(line, text, reader);
        if (number == 1 && (text.starts_with("\xEF\xBB\xBF") || text.starts_with("\xFF\xFE")))
        {
            line.surprise = "starts with a byte-order mark, which is read as part of the line";
            line.isDamage = true;
        }
        section = line.section;
        lines.push_back(std::move(line));
    }
    return lines;
}

std::string Format(const std::vector<IniLine>& lines)
{
    std::string text;
    for (const IniLine& line : lines)
    {
        const bool isSurprise = !line.surprise.empty();
        const bool hasValue = !line.value.empty() || !isSurprise;
        text += fmt::format("{} {:>5}  {}\n", isSurprise ? Coloured("!", Colour::Bad) : " ", line.number,
                            line.isHeader ? Coloured("[" + Printable(line.section) + "]", Colour::Heading)
                                          : Printable(line.key) + (hasValue ? " = " + Printable(line.value) : ""));
        if (isSurprise)
            text += fmt::format("         {}\n", Printable(line.surprise));
    }
    return text;
}
} // namespace FraxoInfo
