#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Files.h"
#include "Programs.h"
#include "SettingsStore.h"
#include "stores/Registry.h"

namespace Benchmarks
{
std::vector<SettingsStoreKind>& SettingsStoreKinds()
{
    static std::vector<SettingsStoreKind> kinds;
    return kinds;
}

namespace
{
const std::string ReadTask = "read a setting";

std::filesystem::path FolderOf(const SettingsStoreKind& kind, int count)
{
    return Workplace() / (kind.name + ' ' + std::to_string(count));
}

/// One store of a kind for all repetitions: a process cannot open some of them twice.
std::shared_ptr<SettingsStore> Open(const SettingsStoreKind& kind, int count)
{
    static std::map<std::string, std::shared_ptr<SettingsStore>> stores;
    const std::filesystem::path folder = FolderOf(kind, count);
    std::shared_ptr<SettingsStore>& store = stores[folder];
    if (!store)
    {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        store = kind.open(folder);
        store->Fill(count);
        store->Write(SettingsStore::Name(0), "written by a program"); // as every store is that has been used
    }
    if (kind.role == Role::Ours)
        UseRegistry(folder);
    return store;
}

std::string WriteTask(int count)
{
    return "write a setting of " + std::to_string(count);
}

/// What a durable write of a file cannot do without: its name must be on disk as well.
void ReplaceFile(const std::string& path, const std::string& content)
{
    const std::string temporary = path + ".new";
    {
        const Quenlor::Posix::FileDescriptor file{
            ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)};
        Use(static_cast<std::size_t>(::write(file.get(), content.data(), content.size())));
        ::fsync(file.get());
    }
    ::rename(temporary.c_str(), path.c_str());
    const Quenlor::Posix::FileDescriptor folder{::open(Workplace().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    ::fsync(folder.get());
}

void AddRead(Measurements& measurements)
{
    constexpr int count = 1000;
    for (const SettingsStoreKind& kind : SettingsStoreKinds())
    {
        const auto begin = [=]() -> Operation {
            return [store = Open(kind, count), name = SettingsStore::Name(count / 2)]
            { Use(store->Read(name).length()); };
        };
        measurements.push_back({ReadTask, kind.name, kind.role, begin});
        if (kind.role != Role::Ours)
            continue;
        const auto floor = [=]() -> Operation
        {
            return [path = UserHive(FolderOf(kind, count)).string()]
            {
                struct stat status;
                Use(static_cast<std::size_t>(::stat(path.c_str(), &status)));
                };
        };
        measurements.push_back({ReadTask, "stat", Role::Floor, floor});
    }
}

void AddWrite(Measurements& measurements, int count)
{
    for (const SettingsStoreKind& kind : SettingsStoreKinds())
    {
        const auto begin = [=]() -> Operation
        {
            return [store = Open(kind, count), name = SettingsStore::Name(count / 2)]
            {
                static int number = 0; // never the value that is there
                store->Write(name, SettingsStore::Value(++number % 1000));
                };
        };
        measurements.push_back({WriteTask(count), kind.name, kind.role, begin});
        if (kind.role != Role::Ours)
            continue;
        const auto floor = [=]() -> Operation
        {
            Open(kind, count);
            const std::size_t length = std::filesystem::file_size(UserHive(FolderOf(kind, count)));
            return [path = (Workplace() / "bare write").string(), content = std::string(length, 'x')]
            { ReplaceFile(path, content); };
        };
        measurements.push_back({WriteTask(count), "write, sync, rename, sync", Role::Floor, floor});
    }
}

/// The whole hive is read again: what a read costs after a change by another program.
void AddReload(Measurements& measurements, int count)
{
    for (const SettingsStoreKind& kind : SettingsStoreKinds())
    {
        if (kind.role != Role::Ours)
            continue;
        const auto begin = [=]() -> Operation
        {
            return [store = Open(kind, count), hive = UserHive(FolderOf(kind, count)).string()]
            {
                static time_t seconds = 1'000'000'000;
                const timespec times[] = {{++seconds, 0}, {seconds, 0}};
                ::utimensat(AT_FDCWD, hive.c_str(), times, 0);
                Use(store->Read(SettingsStore::Name(0)).length());
                };
        };
        measurements.push_back({"read a changed hive of " + std::to_string(count), kind.name, kind.role, begin});
    }
}

bool SeesOtherProcesses(const SettingsStoreKind& kind)
try
{
    const std::shared_ptr<SettingsStore> store = Open(kind, 100);
    const std::string name = SettingsStore::Name(50);
    if (store->Read(name) != SettingsStore::Value(50))
        return false;
    for (const std::string value : {"another", "a third"})
    {
        Run({OwnPath(), "--write", kind.name, FolderOf(kind, 100), name, value});
        if (store->Read(name) != value)
            return false;
    }
    return true;
}
catch (const std::exception&)
{
    return false;
}
} // namespace

void CheckSettingsStores()
{
    std::erase_if(SettingsStoreKinds(),
                  [](const SettingsStoreKind& kind)
                  {
        const bool isCorrect = SeesOtherProcesses(kind);
        if (!isCorrect)
            std::fprintf(stderr, "%s is left out: it does not see what another process writes\n", kind.name.c_str());
        return !isCorrect;
    });
}

void WriteSetting(const std::string& kind, const std::string& folder, const std::string& name, const std::string& value)
{
    std::ranges::find(SettingsStoreKinds(), kind, &SettingsStoreKind::name)->open(folder)->Write(name, value);
}

void AddSettings(Measurements& measurements)
{
    AddRead(measurements);
    for (const int count : {100, 1000, 10'000, 100'000})
    {
        AddWrite(measurements, count);
        AddReload(measurements, count);
    }
}
} // namespace Benchmarks
