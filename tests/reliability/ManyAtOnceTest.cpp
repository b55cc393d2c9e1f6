#include <atomic>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <vector>

#include <gtest/gtest.h>

#include "RegistryHelper.h"
#include "registry/Hives.h"
#include "reliability/Processes.h"
#include "support/ScratchMachine.h"

// Many processes at one hive. FRAXO_WRITERS, FRAXO_WRITES and FRAXO_READERS say how many.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::StandIn::Registry;

constexpr int MostWriters = 64;

/// What the processes know of each other.
struct Shared
{
    std::atomic<int> written[MostWriters] = {}; ///< The last number that a writer has been told is stored.
    std::atomic<bool> isOver = false;
    std::atomic<std::size_t> reads = 0;
    std::atomic<std::size_t> torn = 0;
    std::atomic<std::size_t> outdated = 0;
};

class ManyAtOnceTest : public ::testing::Test
{
protected:
    ManyAtOnceTest()
    {
        void* const page = ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        m_shared = new (page) Shared;
    }
    ~ManyAtOnceTest() override { ::munmap(m_shared, sizeof(Shared)); }

    static std::vector<pid_t> StartAll(int count, const std::function<int(int)>& body)
    {
        std::vector<pid_t> processes;
        for (int i = 0; i < count; ++i)
            processes.push_back(Start([&] { return body(i); }));
        return processes;
    }

    static std::string Name(int writer, int write) { return std::to_string(writer) + '.' + std::to_string(write); }

    int Write(int writer, int writes)
    {
        for (int write = 1; write <= writes; ++write)
        {
            if (!RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "Shared", Name(writer, write), write))
                return 1;
            m_shared->written[writer] = write;
        }
        return 0;
    }

    /// Looks at what each writer has stored last, and at the hive as a whole.
    int Read(int writers)
    {
        std::size_t most = 0;
        for (int writer = 0; !m_shared->isOver; writer = (writer + 1) % writers)
        {
            const int write = m_shared->written[writer];
            const int stored = RegistryHelper::GetIntValue(HKEY_CURRENT_USER, "Shared", Name(writer, write), 0);
            m_shared->outdated += write != 0 && stored != write;

            std::size_t values = 0;
            const auto count = [&](const Key& root)
            {
                const Key* const found = root.Find("Shared");
                values = found && found->FindValue("first") ? found->Values().size() : 0;
            };
            std::vector<RegistryFileProblem> problems;
            const bool isWhole = ReadHive(HKEY_CURRENT_USER, count) == ERROR_SUCCESS &&
                                 HiveProblems(HKEY_CURRENT_USER, problems) == ERROR_SUCCESS && problems.empty();
            m_shared->torn += !isWhole || values == 0 || values < most;
            most = std::max(values, most);
            ++m_shared->reads;
        }
        return 0;
    }

    ScratchMachine m_machine;
    Shared* m_shared = nullptr;
};

TEST_F(ManyAtOnceTest, WritersLoseNothingAndReadersSeeWholeHives)
{
    const int writers = std::min(CountFrom("FRAXO_WRITERS", 32), MostWriters);
    const int writes = CountFrom("FRAXO_WRITES", 10);
    m_machine.WriteNumber(HKEY_CURRENT_USER, "Shared", "first", 1);
    const auto readers = StartAll(CountFrom("FRAXO_READERS", 8), [&](int) { return Read(writers); });
    for (const pid_t writer : StartAll(writers, [&](int writer) { return Write(writer, writes); }))
        EXPECT_EQ(ExitCode(writer), 0);
    m_shared->isOver = true;
    for (const pid_t reader : readers)
        EXPECT_EQ(ExitCode(reader), 0);

    std::size_t lost = 0;
    for (int writer = 0; writer < writers; ++writer)
    {
        for (int write = 1; write <= writes; ++write)
            lost += RegistryHelper::GetIntValue(HKEY_CURRENT_USER, "Shared", Name(writer, write), 0) != write;
    }
    EXPECT_GT(m_shared->reads, 0U);
    Conclude("many writers and readers",
             {{"writers", writers}, {"writes", writers * writes}, {"reads", m_shared->reads}},
             {{"lost", lost}, {"torn reads", m_shared->torn}, {"outdated reads", m_shared->outdated}});
}
} // namespace
