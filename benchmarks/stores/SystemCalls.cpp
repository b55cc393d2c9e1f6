#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Settings.h"

namespace Benchmarks
{
namespace
{
/// A file as long as the registry's: `stat` to see whether it has changed, and a replacement that is on disk.
class Store
{
public:
    explicit Store(const std::filesystem::path& folder) : m_folder{folder}, m_file{folder / "settings"} {}

    void Select() const {}

    void Fill(int count)
    {
        for (int i = 0; i < count; ++i)
            m_text += '"' + SettingName(i) + "\"=\"" + SettingValue(i) + "\"\n";
    }

    std::size_t Read(const std::string&) const
    {
        struct stat status
        {
        };
        ::stat(m_file.c_str(), &status);
        return static_cast<std::size_t>(status.st_size);
    }

    void Write(const std::string&, const std::string&) const
    {
        const std::string temporary = m_file.string() + ".new";
        const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        benchmark::DoNotOptimize(::write(file, m_text.data(), m_text.size()));
        ::fsync(file);
        ::close(file);
        ::rename(temporary.c_str(), m_file.c_str());
        const int folder = ::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); // to sync the file's name
        ::fsync(folder);
        ::close(folder);
    }

private:
    std::filesystem::path m_folder;
    std::filesystem::path m_file;
    std::string m_text;
};

const bool added = AddStore<Store>("system calls");
} // namespace
} // namespace Benchmarks
