#pragma once

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "reliability/FailingCalls.h"
#include "support/Files.h"

namespace fs = std::filesystem;
using FailingCalls::Call;
using Image = std::map<fs::path, std::optional<std::string>>; ///< Files with their text, and folders.
using Choice = std::function<std::size_t(std::size_t)>;       ///< Picks one of that many ways.

/// Everything that a disk may hold when the power fails; docs/reliability.md describes the model.
class Disk
{
public:
    explicit Disk(const fs::path& root)
    {
        m_names[root] = {Add({})};
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator{root})
            m_names[entry] = {Add(entry.is_directory() ? std::nullopt : std::optional{ReadFile(entry.path())})};
    }

    /// @return whether it may hold something else now
    bool Apply(const Call& call)
    {
        if (!call.isDone)
            return false;
        if (call.name == "fsync")
            return Sync(m_open[call.number]);
        const fs::path path = call.paths.empty() ? "" : call.paths[0];
        const bool isOpening = call.name == "openat", isWrite = call.name == "write", isNaming = call.paths.size() == 2;
        const bool isNew = isOpening && (call.number & O_CREAT) != 0 && Newest(path) == None;
        const bool isFolder = call.name.starts_with("mkdir");
        const bool isGone = call.name.starts_with("rename") || call.name.starts_with("unlink");
        if (isWrite)
            m_files[m_open[call.number]].unsynced.push_back(call);
        if (isNaming) // a file without a name is found by its descriptor
            Name(call.paths[1],
                 path.parent_path() == "/proc/self/fd" ? m_open[std::stoi(path.filename())] : Newest(path));
        if (isGone)
            Name(path, None);
        if (isFolder || isNew)
            Name(path, isNew ? Add("") : Add({}));
        if (isOpening)
            m_open[call.result] = (call.number & O_TMPFILE) == O_TMPFILE ? Add("") : Newest(path);
        return isWrite || isNaming || isGone || isFolder || isNew;
    }

    Image After(const Choice& choose) const
    {
        Image image;
        for (const auto& [path, files] : m_names)
        {
            const std::size_t id = files[choose(files.size())];
            if (id == None || (!image.empty() && !image.contains(path.parent_path())))
                continue;
            const File& file = m_files[id];
            image[path] = file.synced ? std::optional{TextOf(file, choose)} : std::nullopt;
        }
        return image;
    }

private:
    struct File
    {
        std::optional<std::string> synced; ///< None for a folder.
        std::vector<Call> unsynced;
    };

    static constexpr std::size_t None = 0;

    std::size_t Add(const std::optional<std::string>& text)
    {
        m_files.push_back({text, {}});
        return m_files.size() - 1;
    }

    void Name(const fs::path& path, std::size_t file)
    {
        m_names.try_emplace(path, 1, None).first->second.push_back(file);
    }

    std::size_t Newest(const fs::path& path) const { return m_names.contains(path) ? m_names.at(path).back() : None; }

    bool Sync(std::size_t id)
    {
        File& file = m_files[id];
        bool isNeeded = id != None && !file.unsynced.empty();
        if (file.synced)
            file = {TextOf(file, [](std::size_t ways) { return ways - 1; }), {}};
        for (auto& [path, files] : m_names)
        {
            const bool isIn = id != None && Newest(path.parent_path()) == id;
            isNeeded |= isIn && files.size() > 1;
            files.erase(files.begin(), isIn ? files.end() - 1 : files.begin());
        }
        return isNeeded;
    }

    static std::string TextOf(const File& file, const Choice& choose)
    {
        std::string text = *file.synced;
        for (const Call& write : file.unsynced)
        {
            // Nothing; only zeros; the first sector; that and zeros, and so on to the whole.
            const std::size_t size = write.data.size(), first = write.at / 512;
            const std::size_t way = choose(2 * ((write.at + size + 511) / 512 - first) + 1);
            const std::size_t length = std::min(size, std::max((first + way / 2) * 512, write.at) - write.at);
            const std::size_t zeros = way % 2 * (size - length);
            if (way == 0)
                continue;
            text.resize(std::max(text.size(), write.at + length + zeros));
            text.replace(write.at, length + zeros, write.data.substr(0, length).append(zeros, '\0'));
        }
        return text;
    }

    std::vector<File> m_files{1};                         // the first is None, for what is not watched
    std::map<fs::path, std::vector<std::size_t>> m_names; // the files that each may name, the newest last
    std::map<int, std::size_t> m_open;
};

inline std::vector<Image> StatesOf(const Disk& disk)
{
    std::vector<Image> states;
    std::vector<std::pair<std::size_t, std::size_t>> choices; // what was chosen, of how many
    do
    {
        std::size_t position = 0;
        const auto next = [&](std::size_t count)
        {
            if (position == choices.size())
                choices.emplace_back(0, count);
            return choices[position++].first;
        };
        states.push_back(disk.After(next));
        while (!choices.empty() && ++choices.back().first == choices.back().second)
            choices.pop_back();
    } while (!choices.empty());
    return states;
}
