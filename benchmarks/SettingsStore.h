#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Measurement.h"

namespace Benchmarks
{
/// A store of settings on disk. What another process writes is seen by the next read.
class SettingsStore
{
public:
    virtual ~SettingsStore() = default;

    virtual void Fill(int count) = 0; ///< With the settings 0 to `count` - 1, by whatever way is quick.
    virtual std::string Read(const std::string& name) = 0;
    virtual void Write(const std::string& name, const std::string& value) = 0; ///< On disk when it returns.

    static std::string Name(int number) { return "Setting" + std::to_string(number); }
    static std::string Value(int number) { return "value of setting " + std::to_string(number); }
};

struct SettingsStoreKind
{
    std::string name;
    std::string version;
    Role role;
    std::unique_ptr<SettingsStore> (*open)(const std::filesystem::path& folder);
};

/// All stores that this program was built with.
std::vector<SettingsStoreKind>& SettingsStoreKinds();

/// A store whose adapter `Store` is constructed from an existing folder. Its source file holds one of these.
template<class Store>
struct RegisterSettingsStore
{
    RegisterSettingsStore(const char* name, const char* version, Role role = Role::Peer)
    {
        SettingsStoreKinds().push_back({name, version, role,
                                        [](const std::filesystem::path& folder) -> std::unique_ptr<SettingsStore>
                                        { return std::make_unique<Store>(folder); }});
    }
};

/// Takes the stores away whose next read does not see what another process has written, and says so.
void CheckSettingsStores();

/// What the other process of that check does.
void WriteSetting(const std::string& kind, const std::string& folder, const std::string& name,
                  const std::string& value);
} // namespace Benchmarks
