#include <INIReader.h>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
class File
{
public:
    explicit File(const std::string& path) : m_file{path} {}

    std::string Value(const std::string& section, const std::string& key) const { return m_file.Get(section, key, {}); }

private:
    ::INIReader m_file;
};

const bool added = AddReader<File>("inih");
} // namespace
} // namespace Benchmarks
