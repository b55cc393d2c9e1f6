#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <IniReader.h>

/// IniReader as plainly as its rules can be written down: each line of the file into tables. Slow, and easy to check.
class ReferenceIniReader final
{
public:
    using Values = std::map<std::string, std::map<std::string, std::string>>;

    bool LoadFile(const std::filesystem::path& path)
    {
        m_values.clear();
        if (!std::filesystem::exists(path))
            return false;
        std::ifstream file{path};
        std::string section;
        for (std::string text; std::getline(file, text);)
        {
            const Line line = Parse(text);
            if (line.kind == Kind::Header)
                section = line.name;
            if (line.kind == Kind::KeyValue)
            {
                m_values[section][line.name] = line.value;
                m_keyOrder[section].push_back(line.name);
            }
        }
        return true;
    }

    bool LoadSection(const std::filesystem::path& path, const std::string& section)
    {
        m_values.clear();
        if (!std::filesystem::exists(path))
            return false;
        std::ifstream file{path};
        bool isInside = false;
        for (std::string text; std::getline(file, text);)
        {
            const Line line = Parse(text);
            if (line.kind == Kind::Header && isInside)
                break;
            if (line.kind == Kind::Header)
                isInside = line.name == section;
            if (line.kind == Kind::KeyValue && isInside)
                m_values[section][line.name] = line.value;
        }
        return true;
    }

    const Values& AllValues() const noexcept { return m_values; }

    /// Throws std::out_of_range where IniReader does; only the message is the standard library's own.
    void GetKeyValuePairListBySection(const std::string& section,
                                      std::vector<Quenlor::Fraxo::SharedUtilities::Native::IniKeyValue>& pairs) const
    {
        pairs.clear();
        if (!m_values.contains(section))
            return;
        for (const std::string& key : m_keyOrder.at(section))
            pairs.push_back({key, m_values.at(section).at(key)});
    }

private:
    enum class Kind
    {
        Ignored,
        Header,
        KeyValue,
    };
    struct Line
    {
        Kind kind = Kind::Ignored;
        std::string name;
        std::string value;
    };

    static Line Parse(const std::string& text)
    {
        const std::string line = Trim(text);
        if (line == "" || line[0] == ';' || line[0] == '#')
            return {};
        const std::size_t length = line.length();
        if ((line[0] == '[' || line[length - 1] == ']') && length > 2 && Trim(line.substr(1, length - 2)) != "")
            return {Kind::Header, Trim(line.substr(1, length - 2)), ""};
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos)
            return {};
        return {Kind::KeyValue, Trim(line.substr(0, equals)), Trim(line.substr(equals + 1))};
    }

    static std::string Trim(const std::string& text)
    {
        const char* const whiteSpace = " \n\r\t\f\v";
        const std::size_t first = text.find_first_not_of(whiteSpace);
        if (first == std::string::npos)
            return "";
        return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
    }

    Values m_values;
    std::map<std::string, std::vector<std::string>> m_keyOrder;
};
