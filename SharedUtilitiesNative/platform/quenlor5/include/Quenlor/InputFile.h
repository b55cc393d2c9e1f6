#pragma once

#include <cstddef>

#include <Quenlor/QuenlorExport.h>

namespace Quenlor
{
/// A file that is read once from its start to its end, as the C runtime reads text: on Windows CR LF becomes LF, and a
/// Ctrl+Z ends the file; elsewhere all bytes are given as they are.
class QUENLOR_EXPORT InputFile final
{
public:
    /// Finds the file as QnFileName::ToNativePath would, without asking first whether it is there.
    explicit InputFile(const wchar_t* path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    bool IsOpen() const noexcept { return m_descriptor >= 0; } ///< False when it is missing as well.

    /// The length of the whole file in bytes as far as the system knows it; 0 when it does not.
    std::size_t Length() const noexcept;

    /// @return how many bytes were put into `buffer`: 0 at the end, and when the file cannot be read
    std::size_t Read(char* buffer, std::size_t size) noexcept;

private:
    int m_descriptor;
};
} // namespace Quenlor
