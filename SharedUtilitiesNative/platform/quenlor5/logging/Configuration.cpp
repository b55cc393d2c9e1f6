#include "logging/Configuration.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <iterator>
#include <limits>
#include <pugixml.hpp>
#include <set>
#include <span>
#include <system_error>

#include <Quenlor/QnStringUtilities.h>
#include <Quenlor/TextFile.h>

namespace Quenlor::NativeLogging
{
namespace
{
using Words = std::span<const std::string_view>;

// The names of values, in the order of the values.
constexpr std::string_view LevelNames[] = {"trace", "debug", "info", "warning", "error", "critical", "off"};
constexpr std::string_view TypeNames[] = {"console", "file", "rolling-file", "debugger", "null"};
constexpr std::string_view TargetNames[] = {"stderr", "stdout"};
constexpr std::string_view FlagNames[] = {"false", "true"};

constexpr std::string_view TopElements[] = {"appender", "logger", "root"};
constexpr std::string_view LoggerElements[] = {"appender-ref"};
constexpr std::string_view RootAttributes[] = {"level"};
constexpr std::string_view LoggerAttributes[] = {"name", "level", "additivity"};
constexpr std::string_view ReferenceAttributes[] = {"ref"};
constexpr std::string_view ConsoleAttributes[] = {"name", "type", "pattern", "threshold", "target"};
constexpr std::string_view FileAttributes[] = {"name", "type", "pattern", "threshold", "path"};
constexpr std::string_view RollingFileAttributes[] = {"name", "type", "pattern", "threshold", "path", "size", "count"};
constexpr std::string_view OtherAttributes[] = {"name", "type", "pattern", "threshold"};
constexpr Words AppenderAttributes[] = {ConsoleAttributes, FileAttributes, RollingFileAttributes, OtherAttributes,
                                        OtherAttributes}; // in the order of AppenderType

/// Message, level and name; logger, thread and process; times. No source position: records have none.
constexpr std::string_view PatternFlags = "vlLntPYCmdHIMSefFEpaAbBDTRrcz%";

constexpr std::size_t LargestFile = std::size_t{16} << 20;

/// More would not help, and a report should not be much longer than the file.
constexpr std::size_t MostFaults = 100;

bool IsIn(Words words, std::string_view word)
{
    return std::ranges::find(words, word) != words.end();
}

std::string Expected(Words words)
{
    std::string text = "; expected: ";
    for (const std::string_view word : words)
        text.append(word).append(", ");
    text.resize(words.empty() ? 0 : text.length() - 2);
    return text;
}

std::string Quoted(std::string_view text)
{
    return "\"" + std::string{text} + "\"";
}

// ---- values: none when the text is not such a value ----------------------------------------------------------------

template<typename Value, const auto& Names>
std::optional<Value> ToOneOf(std::string_view text)
{
    const auto* const found = std::ranges::find(Names, text);
    return found == std::end(Names) ? std::nullopt : std::optional{static_cast<Value>(found - Names)};
}

std::optional<LogLevel> ToLevel(std::string_view text)
{
    std::string name{text};
    std::ranges::transform(name, name.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return ToOneOf<LogLevel, LevelNames>(name);
}

std::optional<std::uintmax_t> ToCount(std::string_view text)
{
    std::uintmax_t count = 0;
    const char* const end = text.data() + text.length();
    const auto [rest, error] = std::from_chars(text.data(), end, count);
    return error == std::errc{} && rest == end && count <= 1000 ? std::optional{count} : std::nullopt;
}

std::optional<std::uintmax_t> ToSize(std::string_view text)
{
    std::uintmax_t size = 0;
    const char* const end = text.data() + text.length();
    const auto [rest, error] = std::from_chars(text.data(), end, size);
    unsigned shift = 0;
    for (const std::string_view unit : {"", "KB", "MB", "GB"})
    {
        const bool fits = size != 0 && size <= std::numeric_limits<std::uintmax_t>::max() >> shift;
        if (error == std::errc{} && fits && std::string_view{rest, end} == unit)
            return size << shift;
        shift += 10;
    }
    return std::nullopt;
}

/// Every `%` must be followed by an optional alignment and width, and a flag.
std::optional<std::string> ToPattern(std::string_view text)
{
    for (std::size_t i = text.find('%'); i != std::string_view::npos; i = text.find('%', i + 1))
    {
        ++i;
        if (i < text.length() && (text[i] == '-' || text[i] == '='))
            ++i;
        const std::size_t width = i;
        i = std::min(text.find_first_not_of("0123456789", i), text.length());
        if (i != width && i < text.length() && text[i] == '!')
            ++i;
        if (i == text.length() || PatternFlags.find(text[i]) == std::string_view::npos)
            return std::nullopt;
    }
    return std::string{text};
}

// ---- the file ------------------------------------------------------------------------------------------------------

/// One spelling for all spellings of an appender's path, as far as the text shows it: after a variable, which may stand
/// for several folders, `..` may name any of them.
std::wstring PathKey(const std::string& path)
{
    WString key{path.c_str(), true};
    if (path.find("${") == std::string::npos || path.find("..") == std::string::npos)
        QnFileName::FixPathName(key, key.c_str());
    return key.c_str();
}

class Reader final
{
public:
    Reader(const QnFileName& file, std::vector<Fault>& faults) : m_faults{faults} { m_configuration.file = file; }

    /// @param text the contents of the file
    std::optional<Configuration> Read(std::string_view text)
    {
        WString unused;
        if (text.length() > LargestFile)
            return Refuse(0, "the file is larger than 16 MB");
        if (QnStringUtilities::Utf8ToWChar(unused, text.data(), text.length()) != QuenlorStatus::Success)
            return Refuse(0, "the file is not in UTF-8");
        m_text = text;
        for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', end + 1))
            m_lineEnds.push_back(end);
        pugi::xml_document document;
        // As a fragment, in which text outside the elements is not skipped in silence.
        const auto result = document.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_fragment,
                                                 pugi::encoding_utf8);
        if (!result)
            return Refuse(LineAt(static_cast<std::size_t>(result.offset)), result.description());
        const pugi::xml_node top = document.document_element();
        if (std::string_view{top.name()} != "logging")
            return Refuse(LineOf(top), "the outermost element must be <logging>");

        for (const pugi::xml_node node : document.children())
        {
            if (node != top)
                AddFault(LineOf(node), "unexpected content outside <logging>");
        }
        CheckContents(top, {}, TopElements);
        for (const pugi::xml_node node : top.children("appender"))
            ReadAppender(node);
        for (const pugi::xml_node node : top.children("root"))
            ReadLogger(node, "", RootAttributes);
        for (const pugi::xml_node node : top.children("logger"))
        {
            if (const std::string_view name = Required(node, "name"); !name.empty())
                ReadLogger(node, name, LoggerAttributes);
        }
        LoggerSettings& root =
            m_configuration.loggers.try_emplace(L"", LoggerSettings{.line = LineOf(top)}).first->second;
        root.level = root.level.value_or(LogLevel::Warning);
        return std::move(m_configuration);
    }

    std::optional<Configuration> Refuse(std::size_t line, std::string text)
    {
        AddFault(line, std::move(text));
        return std::nullopt;
    }

private:
    std::size_t LineAt(std::size_t position) const
    {
        return static_cast<std::size_t>(std::ranges::lower_bound(m_lineEnds, position) - m_lineEnds.begin()) + 1;
    }

    /// The line of its first character that is not blank. Not counted in its value, where each CR is a line end.
    std::size_t LineOf(pugi::xml_node node) const
    {
        const auto start = static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
        return LineAt(m_text.find_first_not_of(" \t\r\n", start));
    }

    void AddFault(std::size_t line, std::string text)
    {
        if (m_faults.size() < MostFaults)
            m_faults.push_back({line, std::move(text)});
        else if (m_faults.size() == MostFaults)
            m_faults.push_back({line, "too many faults; the rest are not listed"});
    }

    void Complain(pugi::xml_node node, const std::string& text)
    {
        AddFault(LineOf(node), "<" + std::string{node.name()} + ">: " + text);
    }

    void CheckContents(pugi::xml_node node, Words attributes, Words elements)
    {
        std::set<std::string_view> seen;
        for (const pugi::xml_attribute attribute : node.attributes())
        {
            if (!IsIn(attributes, attribute.name()))
                Complain(node, "unknown attribute " + Quoted(attribute.name()) + Expected(attributes));
            else if (!seen.insert(attribute.name()).second)
                Complain(node, "duplicate attribute " + Quoted(attribute.name()));
        }
        for (const pugi::xml_node child : node.children())
        {
            if (child.type() != pugi::node_element)
                AddFault(LineOf(child), "<" + std::string{node.name()} + ">: unexpected text");
            else if (!IsIn(elements, child.name()))
                Complain(child, "unexpected element" + Expected(elements));
        }
    }

    /// @return empty after a complaint
    std::string_view Required(pugi::xml_node node, const char* attribute)
    {
        const std::string_view value = node.attribute(attribute).value();
        if (value.empty())
            Complain(node, "attribute " + Quoted(attribute) + " is missing or empty");
        return value;
    }

    /// Stores the value of an attribute that may be left out.
    template<typename Target, typename Value>
    void ReadInto(Target& target, pugi::xml_node node, const char* attribute,
                  std::optional<Value> (*toValue)(std::string_view), const std::string& expected)
    {
        const pugi::xml_attribute found = node.attribute(attribute);
        if (!found)
            return;
        if (auto value = toValue(found.value()))
            target = *std::move(value);
        else
            Complain(node, "invalid " + std::string{attribute} + "=" + Quoted(found.value()) + expected);
    }

    void ReadAppender(pugi::xml_node node)
    {
        const std::string name{Required(node, "name")};
        std::optional<AppenderType> type;
        if (!Required(node, "type").empty())
            ReadInto(type, node, "type", ToOneOf<AppenderType, TypeNames>, Expected(TypeNames));
        const auto [place, isNew] = m_appenders.try_emplace(name);
        if (!name.empty() && !isNew)
            return Complain(node, "duplicate appender " + Quoted(name) + "; the first one is used");
        if (name.empty() || !type)
            return;

        const Words attributes = AppenderAttributes[static_cast<std::size_t>(*type)];
        CheckContents(node, attributes, {});
        AppenderSettings appender{.name = name, .line = LineOf(node), .type = *type};
        ReadInto(appender.pattern, node, "pattern", ToPattern,
                 "; expected after %: one of " + std::string{PatternFlags});
        ReadInto(appender.threshold, node, "threshold", ToLevel, Expected(LevelNames));
        if (*type == AppenderType::Console)
            ReadInto(appender.toStandardOutput, node, "target", ToOneOf<bool, TargetNames>, Expected(TargetNames));
        if (IsIn(attributes, "path") && !ReadPath(appender, node))
            return;
        if (*type == AppenderType::RollingFile)
        {
            ReadInto(appender.maxSize, node, "size", ToSize,
                     "; expected: a number of bytes, or of KB, MB or GB as in 10MB");
            ReadInto(appender.count, node, "count", ToCount, "; expected: a number from 0 to 1000");
        }
        place->second = m_configuration.appenders.size();
        m_configuration.appenders.push_back(std::move(appender));
    }

    bool ReadPath(AppenderSettings& appender, pugi::xml_node node)
    {
        appender.path = Required(node, "path");
        if (appender.path.empty())
            return false;
        const auto [other, isNew] = m_writers.try_emplace(PathKey(appender.path), appender.name);
        if (!isNew)
            Complain(node, "appender " + Quoted(other->second) + " writes the same file");
        return isNew;
    }

    void ReadLogger(pugi::xml_node node, std::string_view name, Words attributes)
    {
        const auto [place, isNew] = m_configuration.loggers.try_emplace(LoggerKey(name));
        if (!isNew)
            return Complain(node, "duplicate " + (name.empty() ? "element" : Quoted(name)) + "; the first one is used");
        CheckContents(node, attributes, LoggerElements);
        LoggerSettings& logger = place->second;
        logger.line = LineOf(node);
        ReadInto(logger.level, node, "level", ToLevel, Expected(LevelNames));
        ReadInto(logger.isAdditive, node, "additivity", ToOneOf<bool, FlagNames>, Expected(FlagNames));
        for (const pugi::xml_node reference : node.children("appender-ref"))
        {
            CheckContents(reference, ReferenceAttributes, {});
            const std::string_view appender = Required(reference, "ref");
            const auto found = m_appenders.find(appender);
            if (found == m_appenders.end() && !appender.empty())
                Complain(reference, "unknown appender " + Quoted(appender));
            else if (found != m_appenders.end() && found->second)
                logger.appenders.push_back(*found->second);
        }
    }

    std::vector<Fault>& m_faults;
    std::string_view m_text; // the contents of the file
    std::vector<std::size_t> m_lineEnds;
    Configuration m_configuration;
    std::map<std::string, std::optional<std::size_t>, std::less<>> m_appenders; // positions; none after a complaint
    std::map<std::wstring, std::string> m_writers;                              // names of appenders by PathKey
};
} // namespace

std::wstring LoggerKey(std::string_view name)
{
    return WString{std::string{name}.c_str(), true}.ToUpperCase().c_str();
}

std::string_view NameOf(LogLevel level)
{
    return LevelNames[static_cast<std::size_t>(level)];
}

Configuration DefaultConfiguration()
{
    Configuration configuration;
    configuration.appenders = {{.name = "console"}, {.name = "debugger", .type = AppenderType::Debugger}};
    configuration.loggers[L""] = {.level = LogLevel::Warning, .appenders = {0, 1}};
    return configuration;
}

std::optional<Configuration> ReadConfiguration(const QnFileName& file, std::vector<Fault>& faults)
{
    Reader reader{file, faults};
    TextFile text;
    if (ReadTextFile(text, file.GetName()))
        return reader.Read(text.View());
    const std::error_condition reason{errno, std::generic_category()};
    if (reason == std::errc::no_such_file_or_directory || reason == std::errc::not_a_directory)
        return std::nullopt;
    return reader.Refuse(0, "the file cannot be read: " + reason.message());
}

std::string FormatFault(const QnFileName& file, const Fault& fault)
{
    std::string line = NativeName(file);
    if (fault.line != 0)
        line += ":" + std::to_string(fault.line);
    line += ": " + fault.text;
    // A configuration may hold anything, but the report stays one line of text.
    std::ranges::replace_if(
        line, [](char c) { return (c >= '\0' && c < ' ') || c == '\x7F'; }, '?');
    return line;
}
} // namespace Quenlor::NativeLogging
