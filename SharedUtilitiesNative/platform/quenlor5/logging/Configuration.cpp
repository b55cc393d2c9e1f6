#include "logging/Configuration.h"

#include <algorithm>
#include <charconv>
#include <concepts>
#include <iterator>
#include <limits>
#include <pugixml.hpp>
#include <set>
#include <span>
#include <system_error>

#include <Quenlor/QnStringUtilities.h>

#include "logging/System.h"

namespace Quenlor::NativeLogging
{
namespace
{
using Words = std::span<const std::string_view>;

constexpr std::string_view LevelNames[] = {"trace", "debug", "info", "warning", "error", "critical", "off"};
constexpr std::string_view TopElements[] = {"appender", "logger", "root"};
constexpr std::string_view LoggerElements[] = {"appender-ref"};
constexpr std::string_view RootAttributes[] = {"level"};
constexpr std::string_view LoggerAttributes[] = {"name", "level", "additivity"};
constexpr std::string_view ReferenceAttributes[] = {"ref"};
constexpr std::string_view AppenderAttributes[] = {"name", "type", "pattern", "threshold"};
constexpr std::string_view ConsoleAttributes[] = {"name", "type", "pattern", "threshold", "target"};
constexpr std::string_view FileAttributes[] = {"name", "type", "pattern", "threshold", "path"};
constexpr std::string_view RollingFileAttributes[] = {"name", "type", "pattern", "threshold", "path", "size", "count"};

struct AppenderKind
{
    std::string_view name;
    AppenderType type;
    Words attributes;
};

constexpr AppenderKind AppenderKinds[] = {
    {"console", AppenderType::Console, ConsoleAttributes},
    {"file", AppenderType::File, FileAttributes},
    {"rolling-file", AppenderType::RollingFile, RollingFileAttributes},
    {"debugger", AppenderType::Debugger, AppenderAttributes},
    {"null", AppenderType::Null, AppenderAttributes},
};

/// Message, level and name; logger, thread and process; times. No source position: records have none.
constexpr std::string_view PatternFlags = "vlLntPYCmdHIMSefFEpaAbBDTRrcz%";

/// More would help nobody, and a report should not be much longer than the file.
constexpr std::size_t MostFaults = 100;

constexpr char Blanks[] = " \t\r\n";

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

// ---- values: none when the text is no such value -------------------------------------------------------------------

char ToLowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::optional<LogLevel> ToLevel(std::string_view text)
{
    std::string name{text};
    std::ranges::transform(name, name.begin(), ToLowerCase);
    const auto* const found = std::ranges::find(LevelNames, name);
    return found == std::end(LevelNames) ? std::nullopt : std::optional{static_cast<LogLevel>(found - LevelNames)};
}

std::optional<bool> ToFlag(std::string_view text)
{
    if (text == "true")
        return true;
    return text == "false" ? std::optional{false} : std::nullopt;
}

/// Whether a console is standard output.
std::optional<bool> ToTarget(std::string_view text)
{
    if (text == "stdout")
        return true;
    return text == "stderr" ? std::optional{false} : std::nullopt;
}

template<std::unsigned_integral Number>
std::optional<Number> ToNumber(std::string_view text)
{
    Number number{};
    const char* const end = text.data() + text.length();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && rest == end ? std::optional{number} : std::nullopt;
}

std::optional<unsigned> ToCount(std::string_view text)
{
    const auto count = ToNumber<unsigned>(text);
    return count && *count <= 1000 ? count : std::nullopt;
}

std::optional<std::uintmax_t> ToSize(std::string_view text)
{
    std::uintmax_t unit = 1;
    for (const std::string_view name : {"KB", "MB", "GB"})
    {
        unit *= 1024;
        if (text.ends_with(name))
        {
            const auto count = ToNumber<std::uintmax_t>(text.substr(0, text.length() - name.length()));
            const bool fits = count && *count != 0 && *count <= std::numeric_limits<std::uintmax_t>::max() / unit;
            return fits ? std::optional{*count * unit} : std::nullopt;
        }
    }
    const auto size = ToNumber<std::uintmax_t>(text);
    return size && *size != 0 ? size : std::nullopt;
}

/// Whether every `%` is followed by an optional alignment and width, and a flag.
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
/// for several folders, nobody knows what `..` is.
std::wstring PathKey(const std::string& path)
{
    QnFileName name;
    name.SetNameUtf8(path.c_str());
    WString fixed = name.GetName();
    if (path.find("${") == std::string::npos || path.find("..") == std::string::npos)
        QnFileName::FixPathName(fixed, name.GetName());
    return fixed.c_str();
}

class Reader final
{
public:
    Reader(const QnFileName& file, std::vector<Fault>& faults) : m_faults{faults} { m_configuration.file = file; }

    /// @param text the contents of the file
    std::optional<Configuration> Read(const std::string& text)
    {
        WString unused;
        if (QnStringUtilities::Utf8ToWChar(unused, text.data(), text.length()) != QuenlorStatus::Success)
            return Refuse(0, "the file is not in UTF-8");
        for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', end + 1))
            m_lineEnds.push_back(end);
        pugi::xml_document document;
        // As a fragment, in which text outside the elements is not skipped in silence.
        const auto result = document.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_fragment,
                                                 pugi::encoding_utf8);
        if (!result)
            return Refuse(LineAt(result.offset), result.description());
        const pugi::xml_node top = document.document_element();
        if (std::string_view{top.name()} != "logging")
            return Refuse(LineOf(top), "the outermost element must be <logging>");

        for (const pugi::xml_node node : document.children())
        {
            if (node != top)
                AddFault(LineOf(node), "nothing is expected outside <logging>");
        }
        CheckAttributes(top, {});
        CheckChildren(top, TopElements);
        for (const pugi::xml_node node : top.children("appender"))
            ReadAppender(node);
        m_configuration.loggers[""] = {.line = LineOf(top), .level = LogLevel::Warning};
        for (const pugi::xml_node node : top.children("root"))
            ReadLogger(node, "", RootAttributes);
        for (const pugi::xml_node node : top.children("logger"))
        {
            if (const std::string_view name = Required(node, "name"); !name.empty())
                ReadLogger(node, name, LoggerAttributes);
        }
        return std::move(m_configuration);
    }

    std::optional<Configuration> Refuse(std::size_t line, std::string text)
    {
        AddFault(line, std::move(text));
        return std::nullopt;
    }

private:
    std::size_t LineAt(std::ptrdiff_t offset) const
    {
        const auto position = static_cast<std::size_t>(std::max<std::ptrdiff_t>(offset, 0));
        return static_cast<std::size_t>(std::ranges::lower_bound(m_lineEnds, position) - m_lineEnds.begin()) + 1;
    }

    std::size_t LineOf(pugi::xml_node node) const
    {
        const std::string_view text = node.value(); // of an element: empty
        const auto blank = text.substr(0, text.find_first_not_of(Blanks));
        return LineAt(node.offset_debug()) + static_cast<std::size_t>(std::ranges::count(blank, '\n'));
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

    void CheckAttributes(pugi::xml_node node, Words known)
    {
        std::set<std::string_view> seen;
        for (const pugi::xml_attribute attribute : node.attributes())
        {
            if (!IsIn(known, attribute.name()))
                Complain(node, "unknown attribute " + Quoted(attribute.name()) + Expected(known));
            else if (!seen.insert(attribute.name()).second)
                Complain(node, "duplicate attribute " + Quoted(attribute.name()));
        }
    }

    void CheckChildren(pugi::xml_node node, Words known)
    {
        for (const pugi::xml_node child : node.children())
        {
            if (child.type() != pugi::node_element)
                AddFault(LineOf(child), "<" + std::string{node.name()} + ">: unexpected text");
            else if (!IsIn(known, child.name()))
                Complain(child, "unexpected element" + Expected(known));
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
        const std::string_view type = Required(node, "type");
        const auto [place, isNew] = m_appenders.try_emplace(name);
        if (!name.empty() && !isNew)
            return Complain(node, "duplicate appender " + Quoted(name) + "; the first one is used");
        if (name.empty() || type.empty())
            return;
        const auto* const kind = std::ranges::find(AppenderKinds, type, &AppenderKind::name);
        if (kind == std::end(AppenderKinds))
        {
            std::vector<std::string_view> names;
            std::ranges::transform(AppenderKinds, std::back_inserter(names), &AppenderKind::name);
            return Complain(node, "unknown type " + Quoted(type) + Expected(names));
        }

        CheckAttributes(node, kind->attributes);
        CheckChildren(node, {});
        AppenderSettings appender{.name = name, .line = LineOf(node), .type = kind->type};
        ReadInto(appender.pattern, node, "pattern", ToPattern,
                 "; expected after %: one of " + std::string{PatternFlags});
        ReadInto(appender.threshold, node, "threshold", ToLevel, Expected(LevelNames));
        if (kind->type == AppenderType::Console)
            ReadInto(appender.toStandardOutput, node, "target", ToTarget, "; expected: stdout, stderr");
        if (IsIn(kind->attributes, "path") && !ReadPath(appender, node))
            return;
        if (kind->type == AppenderType::RollingFile)
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
        const std::string key = LoggerKey(name);
        if (!m_loggers.insert(key).second)
            return Complain(node,
                            (name.empty() ? std::string{"duplicate element"} : "duplicate logger " + Quoted(name)) +
                                "; the first one is used");
        CheckAttributes(node, attributes);
        CheckChildren(node, LoggerElements);
        LoggerSettings& logger = m_configuration.loggers[key];
        logger.line = LineOf(node);
        ReadInto(logger.level, node, "level", ToLevel, Expected(LevelNames));
        ReadInto(logger.isAdditive, node, "additivity", ToFlag, "; expected: true, false");
        for (const pugi::xml_node reference : node.children("appender-ref"))
            ReadReference(logger, reference);
    }

    void ReadReference(LoggerSettings& logger, pugi::xml_node node)
    {
        CheckAttributes(node, ReferenceAttributes);
        CheckChildren(node, {});
        const std::string name{Required(node, "ref")};
        const auto found = m_appenders.find(name);
        if (found == m_appenders.end())
        {
            if (!name.empty())
                Complain(node, "unknown appender " + Quoted(name));
        }
        else if (found->second) // a faulty appender is reported once
            logger.appenders.push_back(*found->second);
    }

    std::vector<Fault>& m_faults;
    std::vector<std::size_t> m_lineEnds;
    Configuration m_configuration;
    std::map<std::string, std::optional<std::size_t>> m_appenders; // positions by name; none for one that is left out
    std::map<std::wstring, std::string> m_writers;                 // names of appenders by PathKey
    std::set<std::string> m_loggers;                               // by LoggerKey
};
} // namespace

std::string LoggerKey(std::string_view name)
{
    WString wide;
    QnStringUtilities::Utf8ToWChar(wide, name.data(), name.length());
    wide = wide.ToUpperCase();
    Utf8String key;
    QnStringUtilities::WCharToUtf8(key, wide.c_str(), wide.length());
    return {key.data(), key.length()};
}

std::string_view NameOf(LogLevel level)
{
    return LevelNames[static_cast<std::size_t>(level)];
}

Configuration DefaultConfiguration()
{
    Configuration configuration;
    configuration.appenders = {{.name = "console"}, {.name = "debugger", .type = AppenderType::Debugger}};
    configuration.loggers[""] = {.level = LogLevel::Warning, .appenders = {0, 1}};
    return configuration;
}

std::optional<Configuration> ReadConfiguration(const QnFileName& file, std::vector<Fault>& faults)
{
    const std::filesystem::path path = file.ToNativePath();
    std::error_code error;
    if (path.empty() || std::filesystem::status(path, error).type() == std::filesystem::file_type::not_found)
        return std::nullopt;
    Reader reader{file, faults};
    const auto text = ReadConfigurationText(path, error);
    return text ? reader.Read(*text) : reader.Refuse(0, "the file cannot be read: " + error.message());
}
} // namespace Quenlor::NativeLogging
