#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <Quenlor/QuenlorExport.h>

namespace Quenlor
{
/// The whole text of a file.
struct TextFile
{
    std::unique_ptr<char[]> bytes; ///< Not a std::string, which would clear 10 MB before they are read.
    std::size_t length = 0;        ///< How many of the bytes are text.

    /// The text, as long as this object has it.
    std::string_view View() const noexcept { return {bytes.get(), length}; }
};

/// Reads a file as the C runtime reads text: on Windows CR LF becomes LF, and a Ctrl+Z ends the text; elsewhere all
/// bytes are kept. Finds the file as QnFileName::ToNativePath would, without asking first whether it exists.
/// @return false, with the reason in errno, when it cannot be opened or is longer than 256 MB. What cannot be read is
///         missing at the end of `text`.
QUENLOR_EXPORT bool ReadTextFile(TextFile& text, const wchar_t* path);
} // namespace Quenlor
