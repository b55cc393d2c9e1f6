#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include "IniFile.h"

namespace Benchmarks
{
namespace
{
class PropertyTreeFile final : public IniFile
{
public:
    explicit PropertyTreeFile(const std::string& path) { boost::property_tree::read_ini(path, m_tree); }

    std::string Value(const std::string& section, const std::string& key) const override
    {
        return m_tree.get<std::string>(section + '.' + key, "");
    }

    Question Ask(const std::string& section, const std::string& key) const override
    {
        return [this, name = section + '.' + key] { return m_tree.get<std::string>(name).length(); };
    }

private:
    boost::property_tree::ptree m_tree;
};

const RegisterIniReader<PropertyTreeFile> registration{"PropertyTree", PEER_VERSION};
} // namespace
} // namespace Benchmarks
