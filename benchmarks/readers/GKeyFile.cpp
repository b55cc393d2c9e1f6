#include <cstring>
#include <glib.h>

#include "IniFile.h"

namespace Benchmarks
{
namespace
{
struct Free
{
    void operator()(GKeyFile* file) const noexcept { ::g_key_file_unref(file); }
    void operator()(char* text) const noexcept { ::g_free(text); }
};

class GLibIniFile final : public IniFile
{
public:
    explicit GLibIniFile(const std::string& path)
    {
        ::g_key_file_load_from_file(m_file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr);
    }

    std::string Value(const std::string& section, const std::string& key) const override
    {
        const std::unique_ptr<char, Free> text{
            ::g_key_file_get_string(m_file.get(), section.c_str(), key.c_str(), nullptr)};
        return text ? text.get() : "";
    }

    Question Ask(const std::string& section, const std::string& key) const override
    {
        return [this, section, key]
        {
            const std::unique_ptr<char, Free> text{
                ::g_key_file_get_string(m_file.get(), section.c_str(), key.c_str(), nullptr)};
            return std::strlen(text.get());
            };
    }

private:
    std::unique_ptr<GKeyFile, Free> m_file{::g_key_file_new()};
};

const RegisterIniReader<GLibIniFile> registration{"GKeyFile", PEER_VERSION};
} // namespace
} // namespace Benchmarks
