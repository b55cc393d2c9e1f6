#include <Platform/Win32.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <elf.h>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>

#include "posix/Executable.h"
#include "posix/FileDescriptor.h"
#include "posix/NativePath.h"
#include "posix/ReadFile.h"
#include "posix/WideText.h"

namespace Posix = Quenlor::Posix;
using Posix::FileDescriptor;

namespace
{
constexpr DWORD Signature = 0xFEEF04BD;
constexpr std::size_t MostNoteBytes = 1 << 20; // in all segments together, which may overlap

/// The note that holds a version, as cmake/VersionResource.cmake writes it.
struct VersionNote
{
    Elf64_Nhdr header = {.n_namesz = sizeof owner, .n_descsz = sizeof info, .n_type = 1};
    char owner[8] = "Quenlor";
    VS_FIXEDFILEINFO info = {};
};

bool ReadAt(const FileDescriptor& file, void* data, std::size_t size, Elf64_Off offset)
{
    return ::pread(file.get(), data, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
}

std::optional<VS_FIXEDFILEINFO> FindVersionNote(std::string_view notes)
{
    VersionNote note;
    const std::string_view start{reinterpret_cast<const char*>(&note), offsetof(VersionNote, info)};
    const std::string_view found = notes.substr(std::min(notes.find(start), notes.size()));
    if (found.size() < sizeof note)
        return {};
    std::memcpy(&note, found.data(), sizeof note);
    return note.info.dwSignature == Signature ? std::optional{note.info} : std::nullopt;
}

/// The running program is opened by the system's link to it: its path may name a newer file by now, or have bytes that
/// the library's paths cannot hold.
FileDescriptor Open(std::string_view path)
{
    const std::string executable = Posix::ExecutablePath();
    const bool isThisProgram = !executable.empty() && path == Posix::Utf8Of(Posix::WideOf(executable));
    return isThisProgram ? Posix::OpenFile(Posix::ExecutableLink) : Posix::OpenForReading(path);
}

std::optional<VS_FIXEDFILEINFO> ReadVersion(const char* path)
{
    const FileDescriptor file = Open(path ? path : "");
    Elf64_Ehdr header;
    if (!file || !ReadAt(file, &header, sizeof header, 0) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_phentsize != sizeof(Elf64_Phdr))
        return {};
    std::size_t bytesLeft = MostNoteBytes;
    for (Elf64_Half i = 0; i < header.e_phnum; ++i)
    {
        Elf64_Phdr segment;
        if (!ReadAt(file, &segment, sizeof segment, header.e_phoff + i * sizeof segment))
            return {};
        if (segment.p_type != PT_NOTE || segment.p_filesz > bytesLeft)
            continue;
        bytesLeft -= segment.p_filesz;
        std::string notes(segment.p_filesz, '\0');
        if (!ReadAt(file, notes.data(), notes.size(), segment.p_offset))
            continue;
        if (const auto version = FindVersionNote(notes))
            return version;
    }
    return {};
}
} // namespace

DWORD GetFileVersionInfoSizeA(LPCSTR path, LPDWORD unused)
{
    if (unused)
        *unused = 0;
    return ReadVersion(path) ? sizeof(VS_FIXEDFILEINFO) : 0;
}

BOOL GetFileVersionInfoA(LPCSTR path, DWORD, DWORD size, LPVOID block)
{
    const auto version = ReadVersion(path);
    if (!version || !block || size < sizeof *version)
        return FALSE;
    std::memcpy(block, &*version, sizeof *version);
    return TRUE;
}

BOOL VerQueryValueA(LPCVOID block, LPCSTR subBlock, LPVOID* value, UINT* size)
{
    if (!block || !subBlock || !value || !size || std::string_view{subBlock} != R"(\)")
        return FALSE;
    *value = const_cast<void*>(block);
    *size = sizeof(VS_FIXEDFILEINFO);
    return TRUE;
}
