#include <INIReader.h>

#include "IniFile.h"

namespace Benchmarks
{
namespace
{
class InihFile final : public IniFile
{
public:
    explicit InihFile(const std::string& path) : m_file{path} {}

    std::string Value(const std::string& section, const std::string& key) const override
    {
        return m_file.Get(section, key, "");
    }

    Question Ask(const std::string& section, const std::string& key) const override
    {
        return [this, section, key, none = std::string{}] { return m_file.Get(section, key, none).length(); };
    }

private:
    ::INIReader m_file;
};

const RegisterIniReader<InihFile> registration{"inih", PEER_VERSION};
} // namespace
} // namespace Benchmarks
