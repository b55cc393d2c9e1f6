#pragma once

#include <filesystem>
#include <map>
#include <memory>

#include "IniFiles.h"

namespace Benchmarks
{
inline std::string SettingName(int number)
{
    return "Setting" + std::to_string(number);
}

inline std::string SettingValue(int number)
{
    return "value of setting " + std::to_string(number);
}

/// One store for all repetitions, because a process cannot open some kinds twice. On a real disk, for real syncs.
template<class Store>
Store& Open(const char* name, int count)
{
    static std::map<int, std::unique_ptr<Store>> stores;
    std::unique_ptr<Store>& store = stores[count];
    if (!store)
    {
        const auto folder = std::filesystem::path{"/var/tmp/fraxo-benchmarks"} / name / std::to_string(count);
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        store = std::make_unique<Store>(folder);
        store->Fill(count);
        store->Write(SettingName(0), "written by a program"); // like every store in use
    }
    store->Select();
    return *store;
}

template<class Store>
void AddReading(const char* name, int count)
{
    Add("read a setting of " + std::to_string(count) + '/' + name,
        [=](benchmark::State& state)
        {
        Store& store = Open<Store>(name, count);
        const std::string setting = SettingName(count / 2);
        for ([[maybe_unused]] const auto iteration : state)
            benchmark::DoNotOptimize(store.Read(setting));
    });
}

template<class Store>
void AddWriting(const char* name, int count)
{
    Add("write a setting of " + std::to_string(count) + '/' + name,
        [=](benchmark::State& state)
        {
        Store& store = Open<Store>(name, count);
        const std::string setting = SettingName(count / 2);
        for ([[maybe_unused]] const auto iteration : state)
        {
            static int number = 0; // never the current value
            store.Write(setting, SettingValue(++number % 1000));
        }
    });
}

/// `Store` is constructed from an empty folder. A written setting is on disk when Write returns, and a read sees what
/// another process has written. Select() is called before a store is used after another one of its kind.
template<class Store>
bool AddStore(const char* name)
{
    AddReading<Store>(name, 1000);
    for (const int count : {100, 10'000})
        AddWriting<Store>(name, count);
    return true;
}
} // namespace Benchmarks
