#define SI_NO_CONVERSION // narrow files are all we ask for
#include <SimpleIni.h>

#include <cstring>

#include "IniFile.h"

namespace Benchmarks
{
namespace
{
class SimpleIniFile final : public IniFile
{
public:
    explicit SimpleIniFile(const std::string& path) { m_file.LoadFile(path.c_str()); }

    std::string Value(const std::string& section, const std::string& key) const override
    {
        return m_file.GetValue(section.c_str(), key.c_str(), "");
    }

    Question Ask(const std::string& section, const std::string& key) const override
    {
        return [this, section, key] { return std::strlen(m_file.GetValue(section.c_str(), key.c_str(), "")); };
    }

private:
    CSimpleIniCaseA m_file;
};

const RegisterIniReader<SimpleIniFile> registration{"SimpleIni", PEER_VERSION};
} // namespace
} // namespace Benchmarks
