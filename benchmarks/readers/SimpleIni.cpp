#define SI_IMPLEMENTATION // the header has all of it
#define SI_NO_CONVERSION  // only narrow files are read
#include <SimpleIni.h>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
class File
{
public:
    explicit File(const std::string& path) { m_file.LoadFile(path.c_str()); }

    std::string Value(const std::string& section, const std::string& key) const
    {
        return m_file.GetValue(section.c_str(), key.c_str(), "");
    }

private:
    CSimpleIniCaseA m_file;
};

const bool added = AddReader<File>("SimpleIni");
} // namespace
} // namespace Benchmarks
