#include <Platform/Win32.h>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
/// The system's own functions, which load nothing before they are asked.
class File
{
public:
    explicit File(const std::string& path) : m_path{path} {}

    std::string Value(const std::string& section, const std::string& key) const
    {
        char text[256];
        return {text, ::GetPrivateProfileStringA(section.c_str(), key.c_str(), "", text, sizeof text, m_path.c_str())};
    }

private:
    std::string m_path;
};

const bool added = AddAsking<File>("GetPrivateProfileString");
} // namespace
} // namespace Benchmarks
