#pragma once

#include <filesystem>
#include <utility>

#include <Quenlor/QuenlorExport.h>
#include <Quenlor/QuenlorStatus.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

namespace Quenlor
{
/// A file-system path, held as wide text exactly as it was given.
///
/// Paths are composed with `\` on every system, and both `\` and `/` are understood. To open a file, ask for the path
/// that this system takes. No operation throws for an ordinary failure.
/// ```cpp
/// QnFileName file{DirectoryConfig::GetHelpDirectory()};
/// file.AppendToPath(L"index.html");
/// std::ifstream page{file.ToNativePath()};
/// ```
///
/// The static operations take wide paths; a null path is an empty one, and an empty path names nothing.
class QUENLOR_EXPORT QnFileName final
{
public:
    /// The parts of a path, which joined in the order device, directory, base name, extension give the path again.
    enum FileNameParts : unsigned
    {
        Extension = 1, ///< With its dot.
        BaseName = 2,
        Device = 4,    ///< `C:` or `\\server\share`.
        Directory = 8, ///< From the separator after the device up to the last separator, both included.
        DeviceAndDirectory = Device | Directory, ///< 12: callers pass the number.
        FileNameAndExtension = BaseName | Extension,
    };

    QnFileName() noexcept = default;
    explicit QnFileName(WString path) noexcept : m_path{std::move(path)} {} ///< Keeps the path exactly as it is.

    explicit QnFileName(const Utf8String& path) { SetNameUtf8(path.c_str()); } ///< As SetNameUtf8.

    /// Keeps only the chosen parts of `fullPath`.
    QnFileName(FileNameParts parts, const wchar_t* fullPath);

    void SetName(const wchar_t* path);  ///< Keeps the path exactly as it is.
    void SetNameUtf8(const char* path); ///< Malformed UTF-8 becomes U+FFFD.

    const wchar_t* GetName() const noexcept { return m_path.c_str(); } ///< Valid until the path changes.
    Utf8String GetNameUtf8() const;                                    ///< The path in UTF-8.

    /// Appends a component with one separator between: none is added when this path is empty or ends in one already,
    /// and a separator that `component` starts with is not doubled. A null or empty component changes nothing.
    QnFileName& AppendToPath(const wchar_t* component);

    /// Ends the path in a separator. An empty path stays empty, so that what is appended to it stays relative.
    void AppendSeparator();

    /// True for `X:\` and `\\server` with either separator. Linux: and for a leading `/`, or `\`, which FixPathName
    /// makes of it.
    bool IsAbsolutePath() const noexcept;

    /// The path to hand to this system.
    ///
    /// Windows: the path as it is, with the extended-length prefix when it is too long for the classic functions.
    /// Linux: with `/` as separator and `.` and `..` resolved as by FixPathName; a component that does not exist in the
    /// given letter case is looked up without regard to case, so "PlugIns" and "Plugins" are one folder. Components
    /// that do not exist keep their spelling. Empty when the path has a device (`C:`), which Linux does not have: it
    /// must never be taken as a relative name.
    std::filesystem::path ToNativePath() const;

    /// The path without its last component and the separator before it; a root keeps its separator (`C:\`).
    /// Empty when there is no directory part.
    static WString GetDirectoryName(const wchar_t* path);

    /// The last component without its extension, which starts at the last dot, unless that dot comes first.
    static WString GetFileNameWithoutExtension(const wchar_t* path);

    /// One spelling for all spellings of a path. The separator is `\`; doubled ones are folded, except the two before a
    /// server's name (on Linux only `\\`: two slashes are the root, as one is); components of one or two dots are
    /// resolved without asking the file system. Letter case and a trailing separator are kept, because callers append
    /// file names to the result. A relative path that comes to nothing is one dot; a path with the extended-length
    /// prefix is left as it is. `out` may be made from `path`.
    static QnFileNameStatus FixPathName(WString& out, const wchar_t* path);

    /// Whether a file or folder of that name exists.
    static bool DoesPathExist(const wchar_t* path);

    /// Creates the folder and its missing parents.
    /// @return Success when it was created, AlreadyExists when it was there, otherwise why it is missing
    static QnFileNameStatus CreateNewDirectory(const wchar_t* path);

    /// Copies one file. The destination appears whole or not at all, and is writable whatever the source's permissions
    /// are. It belongs to this user; on Linux, only this user can read it.
    /// @param overwrite false leaves an existing destination as it is, which is not a failure: callers copy what they
    ///        found missing, and another process may have put a file there since, and changed it
    static QnFileNameStatus QnCopyFile(const wchar_t* source, const wchar_t* destination, bool overwrite);

private:
    WString m_path;
};

/// The path to hand to this system for a path of the library:
/// ```cpp
/// std::ifstream file{ToNativePath(IniConfig::GetPluginsIniPath())};
/// ```
inline std::filesystem::path ToNativePath(const Utf8String& path)
{
    return QnFileName{path}.ToNativePath();
}

/// Puts the full path of a loaded module's file into `out`: `module` is what the system's loader gave (HMODULE, or the
/// handle of dlopen), null is the process's executable. On failure `out` is empty.
QUENLOR_EXPORT QuenlorStatus QnGetModuleFileName(QnFileName& out, void* module);
} // namespace Quenlor
