#include <IniReader.h>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::IniReader;

class File
{
public:
    explicit File(const std::string& path) { m_reader.LoadFile(path); }

    std::string Value(const std::string& section, const std::string& key) const
    {
        return m_reader.GetStringValue(section, key, m_none);
    }

private:
    IniReader m_reader;
    std::string m_none;
};

const bool added = AddReader<File>("IniReader");
} // namespace
} // namespace Benchmarks
