#include <algorithm>
#include <cstdio>
#include <random>

#include <IniReader.h>

#include "Files.h"
#include "IniFile.h"

namespace Benchmarks
{
namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::IniReader;

const IniShape Small{"2 KB", 4, 15};
const IniShape Medium{"100 KB", 10, 300};
const IniShape Large{"10 MB", 1000, 300};
const IniShape Shapes[] = {Small, Medium, {"1 MB", 100, 300}, Large, {"100,000 keys in one section", 1, 100'000}};

std::string PathOf(const IniShape& shape, LineEnd lineEnd = LineEnd::Lf)
{
    return Generate(Workplace(), shape, lineEnd);
}

void AddLoad(Measurements& measurements, const IniShape& shape, LineEnd lineEnd)
{
    const std::string task = "load " + shape.name + (lineEnd == LineEnd::Lf ? "" : ", CRLF");
    for (const IniReaderKind& kind : IniReaderKinds())
    {
        const auto begin = [=]() -> Operation
        { return [path = PathOf(shape, lineEnd), load = kind.load] { Use(load(path) != nullptr); }; };
        measurements.push_back({task, kind.name, kind.role, begin});
    }
    const auto begin = [=]() -> Operation
    {
        const std::string path = PathOf(shape, lineEnd);
        return [path, length = std::filesystem::file_size(path)]
        { ReadPieces(path, length, [](std::string_view piece) { Use(piece.size()); }); };
    };
    measurements.push_back({task, "open, read, close", Role::Floor, begin});
}

/// A thousand questions as programs ask: for settings of one section, then for those of another.
std::vector<Question> Questions(const IniFile& file, const IniShape& shape)
{
    std::mt19937 dice{1};
    const auto roll = [&](int sides) { return static_cast<int>(dice() % static_cast<unsigned>(sides)); };
    std::vector<Question> questions;
    for (int group = 0; group < 50; ++group)
    {
        const std::string section = IniShape::Section(roll(shape.sections));
        for (int i = 0; i < 20; ++i)
            questions.push_back(file.Ask(section, IniShape::Key(roll(shape.keys))));
    }
    return questions;
}

void AddLookUp(Measurements& measurements, const IniShape& shape)
{
    for (const IniReaderKind& kind : IniReaderKinds())
    {
        const auto begin = [=, file = std::shared_ptr<IniFile>{}]() mutable -> Operation
        {
            if (!file)
                file = kind.load(PathOf(shape));
            return [file, questions = Questions(*file, shape)]
            {
                for (const Question& question : questions)
                    Use(question());
                };
        };
        measurements.push_back({"GetStringValue, " + shape.name, kind.name, kind.role, begin, 1000});
    }
}

/// Nothing that is put off while loading is missing here.
void AddLoadAndAskForAll(Measurements& measurements, const IniShape& shape)
{
    for (const IniReaderKind& kind : IniReaderKinds())
    {
        const auto begin = [=]() -> Operation
        {
            return [=, path = PathOf(shape)]
            {
                const std::unique_ptr<IniFile> file = kind.load(path);
                for (int section = 0; section < shape.sections; ++section)
                {
                    for (int key = 0; key < shape.keys; ++key)
                        Use(file->Value(IniShape::Section(section), IniShape::Key(key)).length());
                }
                };
        };
        measurements.push_back({"load and ask for all, " + shape.name, kind.name, kind.role, begin});
    }
}

void CountBrackets(std::string_view text, char bracket)
{
    std::size_t count = 0;
    for (auto next = text.find(bracket); next != text.npos; next = text.find(bracket, next + 1))
        ++count;
    Use(count);
}

void AddLoadSection(Measurements& measurements)
{
    const std::string task = "LoadSection, middle of 10 MB";
    const int middle = Large.sections / 2;
    const auto load = [=]() -> Operation
    {
        return [path = PathOf(Large), section = IniShape::Section(middle)]
        {
            IniReader reader;
            reader.LoadSection(path, section);
            };
    };
    const auto scan = [=]() -> Operation
    {
        const std::string path = PathOf(Large);
        return [path, length = std::filesystem::file_size(path) / 2]
        {
            ReadPieces(path, length,
                       [](std::string_view piece)
                       {
                CountBrackets(piece, '[');
                CountBrackets(piece, ']');
            });
            };
    };
    measurements.push_back({task, "IniReader", Role::Ours, load});
    measurements.push_back({task, "reading and searching as far", Role::Floor, scan});
}

bool ReadsCorrectly(const IniReaderKind& kind, const IniShape& shape, LineEnd lineEnd)
try
{
    const std::unique_ptr<IniFile> file = kind.load(PathOf(shape, lineEnd));
    const int step = std::max(1, shape.sections * shape.keys / 10'000); // all values of the small files
    for (int i = 0; i < shape.sections * shape.keys; i += step)
    {
        const int section = i / shape.keys;
        const int key = i % shape.keys;
        if (file->Value(IniShape::Section(section), IniShape::Key(key)) != IniShape::Value(section, key))
            return false;
    }
    return file->Value(IniShape::Section(0), IniShape::Key(shape.keys)).empty();
}
catch (const std::exception&)
{
    return false;
}
} // namespace

const IniShape& LargeIniFile()
{
    return Large;
}

void CheckIniReaders()
{
    for (const IniShape& shape : Shapes)
    {
        std::erase_if(IniReaderKinds(),
                      [&](const IniReaderKind& kind)
                      {
            const bool isCorrect =
                ReadsCorrectly(kind, shape, LineEnd::Lf) && ReadsCorrectly(kind, shape, LineEnd::CrLf);
            if (!isCorrect)
                std::fprintf(stderr, "%s is left out: it misreads %s\n", kind.name.c_str(), shape.name.c_str());
            return !isCorrect;
        });
    }
}

void AddIniFiles(Measurements& measurements)
{
    for (const IniShape& shape : Shapes)
    {
        for (const LineEnd lineEnd : {LineEnd::Lf, LineEnd::CrLf})
            AddLoad(measurements, shape, lineEnd);
    }
    AddLookUp(measurements, Small);
    AddLookUp(measurements, Large);
    AddLoadAndAskForAll(measurements, Medium);
    AddLoadSection(measurements);
}
} // namespace Benchmarks
