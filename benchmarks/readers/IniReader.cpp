#include <IniReader.h>

#include "IniFile.h"

namespace Benchmarks
{
namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::IniReader;

class OurIniFile final : public IniFile
{
public:
    explicit OurIniFile(const std::string& path) { m_reader.LoadFile(path); }

    std::string Value(const std::string& section, const std::string& key) const override
    {
        return m_reader.GetStringValue(section, key, {});
    }

    Question Ask(const std::string& section, const std::string& key) const override
    {
        return [this, section, key, none = std::string{}]
        { return m_reader.GetStringValue(section, key, none).length(); };
    }

private:
    IniReader m_reader;
};

const RegisterIniReader<OurIniFile> registration{"IniReader", "", Role::Ours};
} // namespace
} // namespace Benchmarks
