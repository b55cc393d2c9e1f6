#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "reliability/DiskTest.h"

// What a power failure may leave of a write or a copy is laid out in a folder, and the library has to work with it.
// docs/reliability.md describes the model of the disk.

namespace
{
using FailingCalls::Change;
using Image = std::map<fs::path, std::optional<std::string>>; ///< Files with their text, and folders.
using Choice = std::function<std::size_t(std::size_t)>;       ///< Picks one of that many ways.

/// Everything that a disk may hold when the power fails.
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
    bool Apply(const Change& change)
    {
        const fs::path path = change.paths.empty() ? "" : change.paths[0];
        const bool isNew = (change.flags & O_CREAT) != 0;
        if (change.call == "fsync")
            return Sync(m_open[change.file]);
        if (change.call == "write")
            m_files[m_open[change.file]].unsynced.push_back(change);
        if (change.paths.size() == 2) // a file without a name is found by its descriptor
            Name(change.paths[1],
                 path.parent_path() == "/proc/self/fd" ? m_open[std::stoi(path.filename())] : Newest(path));
        if (change.call.starts_with("rename") || change.call.starts_with("unlink"))
            Name(path, None);
        if (change.call.starts_with("mkdir") || (isNew && Newest(path) == None))
            Name(path, isNew ? Add("") : Add({}));
        if (isNew || change.call == "open")
            m_open[change.file] = (change.flags & O_TMPFILE) == O_TMPFILE ? Add("") : Newest(path);
        return change.call != "report" && (change.call != "open" || isNew);
    }

    Image After(const Choice& choose) const
    {
        Image image;
        std::map<std::size_t, std::string> texts; // of files, which may have two names
        for (const auto& [path, files] : m_names)
        {
            const std::size_t file = files[choose(files.size())];
            if (file == None || (!image.empty() && !image.contains(path.parent_path())))
                continue;
            if (m_files[file].synced && !texts.contains(file))
                texts[file] = TextOf(m_files[file], choose);
            image[path] = m_files[file].synced ? std::optional{texts[file]} : std::nullopt;
        }
        return image;
    }

private:
    struct File
    {
        std::optional<std::string> synced; ///< None for a folder.
        std::vector<Change> unsynced;
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
        for (const Change& write : file.unsynced)
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

std::vector<Image> StatesOf(const Disk& disk)
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

class PowerFailureTest : public DiskTest
{
protected:
    PowerFailureTest() : DiskTest{3'000} {}

    /// Lets the library open what is on the disk. @return what is wrong with it
    std::string FaultOf(const Image& image, std::size_t reported)
    {
        fs::remove_all(m_place.user);
        for (const auto& [path, text] : image)
        {
            if (!text)
                create_directories(path);
            else if (path != m_place.installed)
                WriteFile(path, *text);
        }
        const std::string view = View();
        const auto first = m_views.begin() + static_cast<std::ptrdiff_t>(IsHive() ? reported : 0); // a copy may be lost
        const auto last = m_views.begin() + static_cast<std::ptrdiff_t>(std::min(reported + 2, m_views.size()));
        if (std::find(first, last, view) == last)
            return "torn or lost";
        AgeTemporaryFiles(m_place.copy.parent_path());
        if (IsHive() ? !IsWritten() : !Provide(m_place) || (view != "none" && View() != view) || !CopyOver(m_place))
            return "no more writes";
        const bool isAsExpected = View().substr(2) == (IsHive() ? view.substr(2) : std::string(2'998, 'd'));
        return isAsExpected && TemporaryFiles(Target().parent_path()).empty() ? "" : "not as it was";
    }

    /// Another program sees what is written from now on.
    bool IsWritten()
    {
        using namespace Quenlor::StandIn::Registry;
        Hive reader{HKEY_CURRENT_USER, m_place.hive};
        return reader.Refresh() == ERROR_SUCCESS && ::RegSetValueExA(HKEY_CURRENT_USER, "x", 0, REG_NONE, {}, 0) == 0 &&
               reader.Refresh() == ERROR_SUCCESS && reader.Root().FindValue("x") &&
               ::RegDeleteValueA(HKEY_CURRENT_USER, "x") == ERROR_SUCCESS;
    }

    /// Tries all states after each of the calls from `first` on. @return the first fault
    std::string FaultOf(const std::vector<Change>& record, std::size_t first = 0)
    {
        FailingCalls::Begin({});
        Disk disk = m_start;
        std::set<Image> tried;
        std::size_t reported = 0;
        for (std::size_t i = 0; i < record.size(); ++i)
        {
            const bool isReport = record[i].call == Reported;
            reported += isReport;
            if (isReport) // from now on fewer states are right
                tried.clear();
            if ((!disk.Apply(record[i]) && !isReport) || i < first)
                continue;
            for (const Image& state : StatesOf(disk))
            {
                if (!tried.insert(state).second)
                    continue;
                ++m_states;
                if (const std::string fault = FaultOf(state, reported); !fault.empty())
                    return fault + " after " + std::to_string(i) + ", " + record[i].call;
            }
        }
        return "";
    }

    const Disk m_start{m_place.machine.Root()};
    std::size_t m_states = 0;
};

TEST_P(PowerFailureTest, LosesNothing)
{
    MakeSteps(Steps());
    const std::vector<Change> record = m_record;
    EXPECT_EQ(FaultOf(record), "");

    // Each sync is needed, and the model finds what is wrong: it is left out, and made after the renaming that follows.
    std::size_t mutations = 0, missed = 0;
    Disk disk = m_start;
    const auto isRenaming = [](const Change& change)
    { return change.call.starts_with("rename") || change.call.starts_with("link"); };
    for (auto sync = record.begin(); sync != record.end(); ++sync)
    {
        if (!disk.Apply(*sync) || sync->call != "fsync")
            continue;
        const auto at = sync - record.begin();
        const auto renaming = std::find_if(sync, record.end(), isRenaming) - record.begin();
        for (const bool isLate : {false, true})
        {
            std::vector<Change> mutated = record;
            if (isLate && renaming != std::ssize(record))
                mutated.insert(mutated.begin() + renaming + 1, *sync);
            mutated.erase(mutated.begin() + at);
            ++mutations;
            missed += FaultOf(mutated, static_cast<std::size_t>(at)).empty();
        }
    }

    // All calls from one on fail; the step is made again, and the power fails.
    for (std::size_t step = 0; step < Steps(); ++step)
    {
        MakeSteps(step + 1);
        for (std::size_t call = m_calls.size(); call > 0 && !HasFailure(); --call)
        {
            MakeSteps(step);
            EXPECT_TRUE(MakeStep(step, {call, true, EIO}) || MakeStep(step, {}));
            const std::vector<Change> changes = m_record;
            EXPECT_EQ(FaultOf(changes, changes.size() - 1), "") << "call " << call << " failed";
        }
    }
    Conclude("power failure, " + GetParam().name,
             {{"calls", record.size()}, {"mutations", mutations}, {"states", m_states}},
             {{"losses", HasFailure()}, {"mutations that lose nothing", missed}});
}

INSTANTIATE_TEST_SUITE_P(, PowerFailureTest, ::testing::ValuesIn(Operations),
                         [](const auto& row) { return row.param.name; });
} // namespace
