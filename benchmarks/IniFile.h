#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Measurement.h"

namespace Benchmarks
{
/// A question about one value with everything prepared. The answer is its length, so that no reader has to make a text
/// of another kind than its own.
using Question = std::function<std::size_t()>;

/// A file as one of the readers has loaded it.
class IniFile
{
public:
    virtual ~IniFile() = default;
    virtual std::string Value(const std::string& section, const std::string& key) const = 0; ///< Empty when missing.
    virtual Question Ask(const std::string& section, const std::string& key) const = 0;
};

struct IniReaderKind
{
    std::string name;
    std::string version;
    Role role;
    std::unique_ptr<IniFile> (*load)(const std::string& path);
};

/// All readers that this program was built with.
std::vector<IniReaderKind>& IniReaderKinds();

/// A reader whose adapter `File` is constructed from the path. Its source file holds one of these.
template<class File>
struct RegisterIniReader
{
    RegisterIniReader(const char* name, const char* version, Role role = Role::Peer)
    {
        IniReaderKinds().push_back({name, version, role, [](const std::string& path) -> std::unique_ptr<IniFile> {
                                        return std::make_unique<File>(path);
                                    }});
    }
};

/// What a generated file holds: sections of the same number of keys, with a comment and an empty line here and there.
struct IniShape
{
    std::string name; ///< As in "load NAME".
    int sections;
    int keys; ///< In each section.

    static std::string Section(int number);
    static std::string Key(int number);
    static std::string Value(int section, int key);
};

enum class LineEnd
{
    Lf,
    CrLf,
};

/// The file of 10 MB.
const IniShape& LargeIniFile();

/// Writes the file below `folder` if it is not there.
std::string Generate(const std::filesystem::path& folder, const IniShape& shape, LineEnd lineEnd);

/// Takes the readers away that misread one of the files, and says so.
void CheckIniReaders();
} // namespace Benchmarks
