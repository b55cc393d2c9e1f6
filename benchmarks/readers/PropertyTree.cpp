#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
class File
{
public:
    explicit File(const std::string& path) { boost::property_tree::read_ini(path, m_tree); }

    std::string Value(const std::string& section, const std::string& key) const
    {
        return m_tree.get<std::string>(section + '.' + key, "");
    }

private:
    boost::property_tree::ptree m_tree;
};

const bool added = AddReader<File>("PropertyTree");
} // namespace
} // namespace Benchmarks
