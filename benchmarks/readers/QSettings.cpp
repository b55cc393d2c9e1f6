#include <QSettings>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>

#include "IniFile.h"

namespace Benchmarks
{
namespace
{
/// Makes the file look changed: QSettings gives back what it read before from one that is not.
void Touch(const std::string& path)
{
    static time_t seconds = 1'000'000'000;
    const timespec times[] = {{++seconds, 0}, {seconds, 0}};
    ::utimensat(AT_FDCWD, path.c_str(), times, 0);
}

class QtIniFile final : public IniFile
{
public:
    explicit QtIniFile(const std::string& path)
    {
        Touch(path);
        m_file.emplace(QString::fromStdString(path), QSettings::IniFormat);
    }

    std::string Value(const std::string& section, const std::string& key) const override
    {
        return m_file->value(QString::fromStdString(section + '/' + key)).toString().toStdString();
    }

    Question Ask(const std::string& section, const std::string& key) const override
    {
        return [this, name = QString::fromStdString(section + '/' + key)]
        { return static_cast<std::size_t>(m_file->value(name).toString().length()); };
    }

private:
    std::optional<QSettings> m_file;
};

const RegisterIniReader<QtIniFile> registration{"QSettings", PEER_VERSION};
} // namespace
} // namespace Benchmarks
