#pragma once

#include <algorithm>
#include <string>

#include <benchmark/benchmark.h>

namespace Benchmarks
{
/// A generated file: sections of the same number of keys, each section with a comment and an empty line, CR LF.
struct IniShape
{
    const char* name; ///< As in "load NAME".
    int sections;
    int keys; ///< In each section.
};

constexpr IniShape SmallIni{"2 KB", 4, 15};
constexpr IniShape MediumIni{"100 KB", 10, 300};
constexpr IniShape LargeIni{"10 MB", 1000, 300};

/// The file's path. Makes the file if it is missing.
std::string PathOf(const IniShape& shape);

std::string Section(int number);
std::string Key(int number);
std::string Value(int section, int key);

/// The best of the repetitions: a disturbance only makes one longer.
inline void Add(const std::string& name, auto measure)
{
    benchmark::RegisterBenchmark(name.c_str(), measure)
        ->UseRealTime()
        ->ComputeStatistics("best", [](const std::vector<double>& times) { return *std::ranges::min_element(times); });
}

template<class File>
void Load(benchmark::State& state, const IniShape& shape)
{
    const std::string path = PathOf(shape);
    for ([[maybe_unused]] const auto iteration : state)
        benchmark::DoNotOptimize(File{path});
}

/// As programs ask: for some settings of one section, then for some of another. Each section has been asked before.
template<class File>
void Ask(benchmark::State& state, const IniShape& shape)
{
    const File file{PathOf(shape)};
    const int last = shape.sections - 1;
    if (file.Value(Section(last), Key(shape.keys - 1)) != Value(last, shape.keys - 1))
        return state.SkipWithError("misreads the file");
    std::vector<std::string> sections, keys;
    for (int i = 0; i < shape.sections; ++i)
    {
        sections.push_back(Section(i));
        benchmark::DoNotOptimize(file.Value(sections.back(), Key(0)));
    }
    for (int i = 0; i < shape.keys; ++i)
        keys.push_back(Key(i));
    std::size_t question = 0;
    for ([[maybe_unused]] const auto iteration : state)
    {
        const std::string& section = sections[question / 8 * 7 % sections.size()];
        benchmark::DoNotOptimize(file.Value(section, keys[question * 7 % keys.size()]));
        ++question;
    }
}

/// Includes what a reader puts off while loading.
template<class File>
void LoadAndAskForAll(benchmark::State& state, const IniShape& shape)
{
    const std::string path = PathOf(shape);
    for ([[maybe_unused]] const auto iteration : state)
    {
        const File file{path};
        for (int section = 0; section < shape.sections; ++section)
        {
            for (int key = 0; key < shape.keys; ++key)
                benchmark::DoNotOptimize(file.Value(Section(section), Key(key)));
        }
    }
}

inline void AddFor(const char* task, const IniShape& shape, const char* subject, auto measure)
{
    Add(std::string{task} + ' ' + shape.name + '/' + subject, [=](benchmark::State& state) { measure(state, shape); });
}

template<class File>
bool AddLoading(const char* name)
{
    for (const IniShape& shape : {SmallIni, MediumIni, LargeIni})
        AddFor("load", shape, name, Load<File>);
    return true;
}

template<class File>
bool AddAsking(const char* name)
{
    for (const IniShape& shape : {SmallIni, LargeIni})
        AddFor("one value of", shape, name, Ask<File>);
    AddFor("load and ask for all,", MediumIni, name, LoadAndAskForAll<File>);
    return true;
}

/// `File` is constructed from a path; Value(section, key) is a text, empty when missing.
template<class File>
bool AddReader(const char* name)
{
    return AddLoading<File>(name) && AddAsking<File>(name);
}
} // namespace Benchmarks
