#include <RegistryHelper.h>
#include <cstdlib>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>

#include "Settings.h"
#include "registry/Hives.h"

namespace Benchmarks
{
namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::RegistryHelper;

/// The user's settings in the registry.
class Store
{
public:
    explicit Store(const std::filesystem::path& folder) : m_folder{folder} {}

    void Select() const
    {
        ::setenv("QUENLOR_REGISTRY_DIR", m_folder.c_str(), 1);
        Quenlor::StandIn::Registry::LocateHives();
    }

    void Fill(int count) const
    {
        Select();
        std::ofstream hive{m_folder / "HKEY_CURRENT_USER.reg"};
        hive << "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\" << m_key.c_str() << "]\n";
        for (int i = 0; i < count; ++i)
            hive << '"' << SettingName(i) << "\"=\"" << SettingValue(i) << "\"\n";
    }

    Utf8String Read(const std::string& name) const
    {
        return RegistryHelper::GetStringValue(HKEY_CURRENT_USER, m_key, name, m_none);
    }

    void Write(const std::string& name, const std::string& value) const
    {
        RegistryHelper::SetStringValue(HKEY_CURRENT_USER, m_key, name, value);
    }

    /// Has the effect of a change by another program.
    void MakeLookChanged() const
    {
        static time_t seconds = 1'000'000'000;
        const timespec times[] = {{++seconds, 0}, {seconds, 0}};
        ::utimensat(AT_FDCWD, (m_folder / "HKEY_CURRENT_USER.reg").c_str(), times, 0);
    }

private:
    std::filesystem::path m_folder;
    Utf8String m_key = RegistryHelper::GetCurrentUserKey();
    Utf8String m_none;
};

bool AddReadingAfterAChange(int count)
{
    const char* const subject = "RegistryHelper";
    Add("read a setting of " + std::to_string(count) + ", file changed/" + subject,
        [=](benchmark::State& state)
        {
        const Store& store = Open<Store>(subject, count);
        for ([[maybe_unused]] const auto iteration : state)
        {
            store.MakeLookChanged();
            benchmark::DoNotOptimize(store.Read(SettingName(0)));
        }
    });
    return true;
}

const bool added = AddStore<Store>("RegistryHelper") && AddReadingAfterAChange(100) && AddReadingAfterAChange(10'000);
} // namespace
} // namespace Benchmarks
