#include <glib.h>
#include <memory>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
struct Free
{
    void operator()(GKeyFile* file) const noexcept { ::g_key_file_unref(file); }
    void operator()(char* text) const noexcept { ::g_free(text); }
};

class File
{
public:
    explicit File(const std::string& path)
    {
        ::g_key_file_load_from_file(m_file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr);
    }

    std::string Value(const std::string& section, const std::string& key) const
    {
        const std::unique_ptr<char, Free> text{
            ::g_key_file_get_string(m_file.get(), section.c_str(), key.c_str(), nullptr)};
        return text ? text.get() : "";
    }

private:
    std::unique_ptr<GKeyFile, Free> m_file{::g_key_file_new()};
};

const bool added = AddReader<File>("GKeyFile");
} // namespace
} // namespace Benchmarks
