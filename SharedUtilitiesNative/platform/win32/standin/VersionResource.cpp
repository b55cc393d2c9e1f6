#include <Platform/Win32.h>

#include <algorithm>
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
constexpr std::string_view NoteOwner{"Quenlor\0", 8}; // its NUL counts
constexpr Elf64_Word FixedFileInfoNote = 1;
constexpr std::size_t MostNoteBytes = 1 << 20; // in all segments together, which may overlap

bool ReadAt(const FileDescriptor& file, void* data, std::size_t size, Elf64_Off offset)
{
    return ::pread(file.get(), data, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
}

template<typename T>
std::optional<T> Take(std::string_view bytes, std::size_t offset)
{
    if (offset > bytes.size() || bytes.size() - offset < sizeof(T))
        return {};
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

constexpr std::size_t AlignedTo4(std::size_t size) noexcept
{
    return (size + 3) & ~std::size_t{3};
}

/// Walks the notes of one segment: header, owner, description, the last two padded to four bytes.
std::optional<VS_FIXEDFILEINFO> FindVersionNote(std::string_view notes)
{
    while (const auto header = Take<Elf64_Nhdr>(notes, 0))
    {
        notes.remove_prefix(sizeof *header);
        const std::size_t ownerEnd = AlignedTo4(header->n_namesz);
        const std::size_t noteEnd = ownerEnd + AlignedTo4(header->n_descsz);
        if (header->n_type == FixedFileInfoNote && notes.substr(0, header->n_namesz) == NoteOwner)
        {
            const auto info = Take<VS_FIXEDFILEINFO>(notes, ownerEnd);
            if (info && header->n_descsz >= sizeof *info && info->dwSignature == Signature)
                return info;
        }
        notes.remove_prefix(std::min(noteEnd, notes.size()));
    }
    return {};
}

/// The running program is opened by the system's link to it: its path may name a newer file by now, or hold bytes that
/// the library's paths cannot.
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
