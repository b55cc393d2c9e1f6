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
std::string Name(std::string_view section)
{
    return "\"" + std::string{section} + "\"";
}

/// What is wrong with a header, as far as people can see; empty when nothing is.
std::string SurpriseOfHeader(std::string_view line, std::string_view name)
{
    if (line.front() == '[' && line.back() == ']')
        return {};
    const std::string effect = ": a header of section " + Name(name);
    if (line.front() == '[')
        return "no closing bracket" + effect;
    return (line.find('=') == line.npos ? "no opening bracket" : "a value that ends in a bracket") + effect;
}

std::string SurpriseOfValue(const IniLine& line, const IniReader& reader)
{
    if (line.key.empty())
        return "no key before the \"=\"";
    if (reader.GetStringValue(line.section, line.key, line.value) != line.value)
        return "a later line of this section has another value, which is used";
    if (line.section.empty())
        return "before the first header: in the section without a name";
    for (const char* const comment : {" ;", "\t;", " #", "\t#"})
    {
        if (line.value.find(comment) != std::string::npos)
            return "the comment is part of the value";
    }
    return {};
}

/// Takes a trimmed line apart. @return whether it is one to show
bool Parse(IniLine& line, std::string_view text, const IniReader& reader)
{
    if (text.find('\0') != text.npos)
    {
        line.surprise = "holds NUL bytes: is the file UTF-16, or damaged?";
        line.isDamage = true;
        return true;
    }
    if (Ini::IsComment(text))
        return false;
    if (const std::string_view name = Ini::HeaderName(text); !name.empty())
    {
        line.section = name;
        line.isHeader = true;
        line.surprise = SurpriseOfHeader(text, name);
        line.isDamage = !line.surprise.empty();
        return true;
    }
    if (!Ini::IsKeyValue(text))
    {
        line.key = text;
        line.surprise = "ignored: neither a header nor a key with \"=\"";
        return true;
    }
    line.key = Ini::KeyOf(text);
    line.value = Ini::ValueOf(text);
    line.surprise = SurpriseOfValue(line, reader);
    return true;
}
} // namespace

std::string ReadWholeFile(const std::filesystem::path& file)
{
    std::error_code error;
    const std::string name = Printable(file.string());
    if (!std::filesystem::exists(file, error))
        throw std::runtime_error("cannot read " + name + ": there is no such file");
    if (!std::filesystem::is_regular_file(file, error))
        throw std::runtime_error("cannot read " + name + ": it is not a file");
    std::ifstream stream{file, std::ios::binary};
    std::ostringstream contents;
    if (stream.peek() != std::ifstream::traits_type::eof())
        contents << stream.rdbuf();
    if (!stream.is_open() || stream.bad() || !contents)
        throw std::runtime_error("cannot read " + name + ": check that this user may read it");
    return contents.str();
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
        const std::string_view text = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(text.length() < rest.length() ? text.length() + 1 : rest.length());
        IniLine line{.number = ++number, .section = section, .key = {}, .value = {}, .surprise = {}};
        const bool isMarked = number == 1 && (text.starts_with("\xEF\xBB\xBF") || text.starts_with("\xFF\xFE"));
        if (!Parse(line, Ini::Trim(text), reader) && !isMarked)
            continue;
        if (isMarked)
        {
            line.surprise = "starts with a byte-order mark, which is taken as part of the line";
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
        std::string number = std::to_string(line.number);
        number.insert(0, number.length() < 5 ? 5 - number.length() : 0, ' ');
        const bool hasValue = !line.isHeader && (!line.value.empty() || line.surprise.empty());
        text.append(line.surprise.empty() ? "  " : Coloured("!", Colour::Bad) + " ").append(number).append("  ");
        text.append(line.isHeader ? Coloured("[" + Printable(line.section) + "]", Colour::Heading)
                                  : Printable(line.key) + (hasValue ? " = " + Printable(line.value) : ""));
        text.append("\n").append(line.surprise.empty() ? "" : "         " + Printable(line.surprise) + "\n");
    }
    return text;
}
} // namespace FraxoInfo
