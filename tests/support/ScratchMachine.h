#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <Platform/Win32.h>

/// A registry value as it is stored: text with its NUL, if it was stored with one.
struct StoredValue
{
    DWORD type;
    std::string bytes;

    friend bool operator==(const StoredValue&, const StoredValue&) = default;
};

enum class ShellFolder
{
    ProgramData,
    LocalAppData,
};

/// An empty machine for one test: registry, shell folders and environment of its own.
///
/// Uses the system's own calls, never the library's: a fixture built on RegistryHelper would agree with
/// RegistryHelper's mistakes. A member that cannot do its work fails the test. There is one at a time.
class ScratchMachine final
{
public:
    /// What a test uses of HKEY_CLASSES_ROOT. Windows has one for all processes: tests that use it share the key
    /// FraxoPro there, which is removed before and after, and must not run at the same time.
    enum class ClassesRoot
    {
        NotUsed,
        Used,
        Merged, ///< Shows what this machine's other two roots have below Software\Classes. Without shell folders.
    };

    explicit ScratchMachine(ClassesRoot classes = ClassesRoot::NotUsed);
    ~ScratchMachine();
    ScratchMachine(const ScratchMachine&) = delete;

    /// The folder of all files of this machine; for the file functions of the standard library.
    const std::filesystem::path& Root() const { return m_root; }

    /// A folder of this machine, created if missing, spelled as the library spells folders: UTF-8 with `\` at the end.
    /// There is a blank in it, as in real installation paths. The shell's folders are "ProgramData" and "LocalAppData".
    std::string Folder(std::string_view name) const;
    /// The product's folder in one of the shell's, spelled the same way; not created.
    std::string ProductFolder(ShellFolder folder) const;
    /// To a native path; the shell gets its bytes as they are.
    void MoveShellFolder(ShellFolder folder, const std::string& path) const;
    /// From now on the shell cannot name it: the path is relative on one system and malformed on the other.
    void BreakShellFolder(ShellFolder folder) const { MoveShellFolder(folder, R"(?:\)"); }

    /// Changes a variable; without a value it is removed. None that the library reads is set at the start.
    void SetEnvironment(const std::string& name, const std::optional<std::string>& value) const;

    /// Stores text as an installer does, with its NUL.
    void WriteText(HKEY root, const std::string& subKey, const char* name, std::string_view text) const;
    void WriteNumber(HKEY root, const std::string& subKey, const char* name, DWORD number) const;
    void WriteData(HKEY root, const std::string& subKey, const char* name, DWORD type, std::string_view bytes) const;

    bool HasKey(HKEY root, const std::string& subKey) const;
    std::optional<StoredValue> ReadData(HKEY root, const std::string& subKey, const char* name) const;

    /// Runs a program whose path and arguments may be in quotes. @return its exit code
    int Run(std::string command) const;

private:
    // What differs between systems is in one source each.
    static char** Environment();
    void TakeRegistry() const;
    void GiveBackRegistry() const;

    const ClassesRoot m_classes;
    std::filesystem::path m_root;
};
