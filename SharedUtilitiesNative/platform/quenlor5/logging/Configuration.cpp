#include "logging/Configuration.h"

#include <algorithm>
#include <charconv>
#include <concepts>
#include <fstream>
#include <iterator>
#include <limits>
#include <pugixml.hpp>
#include <set>
#include <system_error>

#include <Quenlor/QnStringUtilities.h>

namespace Quenlor::NativeLogging
{
namespace
{
// Lists double as text for the reader of a fault.
constexpr std::string_view ListSeparator = ", ";
constexpr std::string_view LevelNames = "trace, debug, info, warning, error, critical, off";
constexpr std::string_view RootAttributes = "level";
constexpr std::string_view LoggerAttributes = "name, level, additivity";

struct AppenderKind
{
    std::string_view name;
    AppenderType type;
    std::string_view attributes;
};

constexpr AppenderKind AppenderKinds[] = {
    {"console", AppenderType::Console, "name, type, pattern, threshold, target"},
    {"file", AppenderType::File, "name, type, pattern, threshold, path"},
    {"rolling-file", AppenderType::RollingFile, "name, type, pattern, threshold, path, size, count"},
    {"debugger", AppenderType::Debugger, "name, type, pattern, threshold"},
    {"null", AppenderType::Null, "name, type, pattern, threshold"},
};
constexpr std::string_view AppenderTypeNames = "console, file, rolling-file, debugger, null";

/// Message, level and name; logger, thread and process; times. No source position: records have none.
constexpr std::string_view PatternFlags = "vlLntPYCmdHIMSefFEpaAbBDTRrcz%";

/// The position of `word` in a list; npos when it is not there.
std::size_t Find(std::string_view list, std::string_view word)
{
    for (std::size_t position = 0;; ++position)
    {
        const std::size_t end = list.find(ListSeparator);
        if (list.substr(0, end) == word)
            return position;
        if (end == std::string_view::npos)
            return end;
        list.remove_prefix(end + ListSeparator.length());
    }
}

bool IsIn(std::string_view list, std::string_view word)
{
    return Find(list, word) != std::string_view::npos;
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
    const std::size_t level = Find(LevelNames, name);
    return level == std::string_view::npos ? std::nullopt : std::optional{static_cast<LogLevel>(level)};
}

std::optional<bool> ToFlag(std::string_view text)
{
    if (text == "true")
        return true;
    return text == "false" ? std::optional{false} : std::nullopt;
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

class Reader final
{
public:
    Reader(const QnFileName& file, std::vector<Fault>& faults) : m_faults{faults} { m_configuration.file = file; }

    /// @param text the contents of the file
    std::optional<Configuration> Read(const std::string& text)
    {
        m_text = text;
        WString unused;
        if (QnStringUtilities::Utf8ToWChar(unused, text.data(), text.length()) != QuenlorStatus::Success)
            return Refuse(0, "the file is not in UTF-8");
        pugi::xml_document document;
        const auto result = document.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
        if (!result)
            return Refuse(LineAt(result.offset), result.description());
        const pugi::xml_node top = document.document_element();
        if (std::string_view{top.name()} != "logging")
            return Refuse(LineOf(top), "the outermost element must be <logging>");

        CheckAttributes(top, "");
        CheckChildren(top, "appender, logger, root");
        for (const pugi::xml_node node : top.children("appender"))
            ReadAppender(node);
        m_configuration.loggers[""].level = LogLevel::Warning;
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
        m_faults.push_back({line, std::move(text)});
        return std::nullopt;
    }

private:
    std::size_t LineAt(std::ptrdiff_t offset) const
    {
        const auto end = m_text.begin() + std::clamp<std::ptrdiff_t>(offset, 0, std::ssize(m_text));
        return static_cast<std::size_t>(std::count(m_text.begin(), end, '\n')) + 1;
    }

    std::size_t LineOf(pugi::xml_node node) const { return LineAt(node.offset_debug()); }

    void Complain(pugi::xml_node node, const std::string& text)
    {
        m_faults.push_back({LineOf(node), "<" + std::string{node.name()} + ">: " + text});
    }

    void CheckAttributes(pugi::xml_node node, std::string_view known)
    {
        std::set<std::string_view> seen;
        for (const pugi::xml_attribute attribute : node.attributes())
        {
            if (!IsIn(known, attribute.name()))
                Complain(node, "there is no attribute " + Quoted(attribute.name()) +
                                   (known.empty() ? std::string{} : "; there are " + std::string{known}));
            else if (!seen.insert(attribute.name()).second)
                Complain(node, "the attribute " + Quoted(attribute.name()) + " is given twice");
        }
    }

    void CheckChildren(pugi::xml_node node, std::string_view known)
    {
        for (const pugi::xml_node child : node.children())
        {
            if (child.type() != pugi::node_element)
                Complain(node, "no text is expected in this element");
            else if (!IsIn(known, child.name()))
                Complain(child, known.empty() ? "no element is expected here"
                                              : "unknown element; here can be " + std::string{known});
        }
    }

    /// @return empty after a complaint
    std::string_view Required(pugi::xml_node node, const char* attribute)
    {
        const std::string_view value = node.attribute(attribute).value();
        if (value.empty())
            Complain(node, "the attribute " + Quoted(attribute) + " is missing or empty");
        return value;
    }

    /// Stores the value of an attribute that may be left out.
    template<typename Target, typename Value>
    void ReadInto(Target& target, pugi::xml_node node, const char* attribute,
                  std::optional<Value> (*toValue)(std::string_view), std::string_view expected)
    {
        const pugi::xml_attribute found = node.attribute(attribute);
        if (!found)
            return;
        if (auto value = toValue(found.value()))
            target = *std::move(value);
        else
            Complain(node, std::string{attribute} + "=" + Quoted(found.value()) + " is not " + std::string{expected});
    }

    void ReadLevelInto(auto& target, pugi::xml_node node, const char* attribute)
    {
        ReadInto(target, node, attribute, ToLevel, "one of " + std::string{LevelNames});
    }

    void ReadAppender(pugi::xml_node node)
    {
        const std::string name{Required(node, "name")};
        const std::string_view type = Required(node, "type");
        if (!name.empty() && !m_appenderNames.insert(name).second)
            return Complain(node, "there are two appenders " + Quoted(name) + "; the first counts");
        if (name.empty() || type.empty())
            return;
        const auto* const kind = std::ranges::find(AppenderKinds, type, &AppenderKind::name);
        if (kind == std::end(AppenderKinds))
            return Complain(node, "type=" + Quoted(type) + " is not one of " + std::string{AppenderTypeNames});

        CheckAttributes(node, kind->attributes);
        CheckChildren(node, "");
        AppenderSettings appender{.name = name, .line = LineOf(node), .type = kind->type};
        ReadInto(appender.pattern, node, "pattern", ToPattern,
                 "a pattern: after % stands one of " + std::string{PatternFlags});
        ReadLevelInto(appender.threshold, node, "threshold");
        if (kind->type == AppenderType::Console)
            ReadTarget(appender, node);
        if (IsIn(kind->attributes, "path") && !ReadPath(appender, node))
            return;
        if (kind->type == AppenderType::RollingFile)
        {
            ReadInto(appender.maxSize, node, "size", ToSize, "a number of bytes, or of KB, MB or GB as in 10MB");
            ReadInto(appender.count, node, "count", ToCount, "a number from 0 to 1000");
        }
        m_configuration.appenders.push_back(std::move(appender));
    }

    void ReadTarget(AppenderSettings& appender, pugi::xml_node node)
    {
        const auto toTarget = [](std::string_view text) -> std::optional<bool>
        {
            if (text == "stdout")
                return true;
            return text == "stderr" ? std::optional{false} : std::nullopt;
        };
        ReadInto(appender.toStandardOutput, node, "target", +toTarget, "stdout or stderr");
    }

    bool ReadPath(AppenderSettings& appender, pugi::xml_node node)
    {
        appender.path = Required(node, "path");
        const auto other = std::ranges::find(m_configuration.appenders, appender.path, &AppenderSettings::path);
        if (appender.path.empty())
            return false;
        if (other == m_configuration.appenders.end())
            return true;
        Complain(node, "the appender " + Quoted(other->name) + " writes the same file");
        return false;
    }

    void ReadLogger(pugi::xml_node node, std::string_view name, std::string_view attributes)
    {
        if (!m_loggerKeys.insert(LoggerKey(name)).second)
            return Complain(
                node, (name.empty() ? std::string{"there are two of it"} : "there are two loggers " + Quoted(name)) +
                          "; the first counts");
        CheckAttributes(node, attributes);
        CheckChildren(node, "appender-ref");
        LoggerSettings& logger = m_configuration.loggers[LoggerKey(name)];
        ReadLevelInto(logger.level, node, "level");
        ReadInto(logger.isAdditive, node, "additivity", ToFlag, "true or false");
        for (const pugi::xml_node reference : node.children("appender-ref"))
            ReadReference(logger, reference);
    }

    void ReadReference(LoggerSettings& logger, pugi::xml_node node)
    {
        CheckAttributes(node, "ref");
        CheckChildren(node, "");
        const std::string name{Required(node, "ref")};
        const auto& appenders = m_configuration.appenders;
        const auto found = std::ranges::find(appenders, name, &AppenderSettings::name);
        if (found != appenders.end())
            logger.appenders.push_back(static_cast<std::size_t>(found - appenders.begin()));
        else if (!name.empty() && !m_appenderNames.contains(name)) // a faulty appender is told of once
            Complain(node, "there is no appender " + Quoted(name));
    }

    std::vector<Fault>& m_faults;
    std::string_view m_text;
    Configuration m_configuration;
    std::set<std::string> m_appenderNames; // also of those that are left out
    std::set<std::string> m_loggerKeys;
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
    std::string_view names = LevelNames;
    for (int i = 0; i < static_cast<int>(level); ++i)
        names.remove_prefix(names.find(ListSeparator) + ListSeparator.length());
    return names.substr(0, names.find(ListSeparator));
}

Configuration DefaultConfiguration()
{
    Configuration configuration;
    configuration.appenders.push_back({.name = "console"});
    configuration.loggers[""] = {.level = LogLevel::Warning, .appenders = {0}};
    return configuration;
}

std::optional<Configuration> ReadConfiguration(const QnFileName& file, std::vector<Fault>& faults)
{
    const std::filesystem::path path = file.ToNativePath();
    std::error_code error;
    if (path.empty() || !std::filesystem::exists(path, error))
        return std::nullopt;
    Reader reader{file, faults};
    const std::uintmax_t size = std::filesystem::file_size(path, error); // an error for what is no file
    std::string text(error ? 0 : static_cast<std::size_t>(size), '\0');
    std::ifstream stream{path, std::ios::binary};
    if (error || !stream.read(text.data(), std::ssize(text)))
        return reader.Refuse(0, "the file cannot be read");
    return reader.Read(text);
}
} // namespace Quenlor::NativeLogging
