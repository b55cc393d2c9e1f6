#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// One line `Key=Value` of an INI file, both sides without the white space around them.
struct IniKeyValue
{
    std::string Key;   ///< Before the first `=`.
    std::string Value; ///< After it.
};

/// Reads an INI file, or one section of it, into memory and answers questions about its values.
///
/// Text is bytes: nothing is decoded, names differ when any byte of them does ("Main" is not "main"), and a byte-order
/// mark is part of the first line. White space is blank, tab, line feed, vertical tab, form feed and carriage return;
/// it is removed from both ends of lines, section names, keys and values. Lines and files may have any length.
///
/// What a line is, the first rule that fits:
/// - Ignored, when it is empty or starts with `;` or `#`. Elsewhere in a line these two have no meaning.
/// - A section header, when it starts with `[` OR ends in `]`. The name is the line without its first and its last
///   character, whatever they are: `[Main]` names "Main", `Main]` names "ain". A line that leaves no name is not a
///   header.
/// - A key and its value, around the first `=`, in the section of the last header, or in section "" before the first
///   one. The key may be empty.
/// - Ignored.
///
/// The last value of a key in its section is the one used. A section without any key does not exist.
///
/// Two rules surprise: a comment after a header belongs to its name, and a copy is empty.
/// ```cpp
/// IniReader reader;                                        // the file: "[Main] ; first\nSize=4\n"
/// reader.LoadFile(path);                                   // the section: "Main] ; firs"
/// IniReader{reader}.GetIntegerValue("Main] ; firs", "Size", 0); // 0; reader itself answers 4
/// ```
///
/// Thread-safety: one thread at a time per object, const queries included; different objects are independent.
/// Besides the exceptions named below only std::bad_alloc is thrown.
class SHAREDUTILITIES_EXPORT IniReader final
{
public:
    IniReader() = default;

    /// AN EMPTY READER: nothing is copied or moved. A copy has to be loaded again.
    IniReader(const IniReader&) noexcept {}
    IniReader& operator=(const IniReader&) = delete;
    ~IniReader();

    /// Replaces all values by those of a file; sections of the same name are merged. The key order is not replaced but
    /// continued, see GetKeyValuePairListBySection.
    /// @return whether the file exists. One that cannot be opened does, and has no values.
    bool LoadFile(const std::wstring& path);
    bool LoadFile(const std::string& path);                                        ///< The path in UTF-8.
    bool LoadFile(const Utf8String& path) { return LoadFile(path.ToStdString()); } ///< As IniConfig answers it.
    bool LoadFile(const char* path) { return LoadFile(Utf8String{path}); }         ///< The path in UTF-8.

    /// Replaces all values by those of one section, which ends at the next header of any name: a later section of the
    /// same name is not read. Section "" has no header and is never found. The key order stays as it is.
    /// @return whether the file exists, even without the section
    bool LoadSection(const std::wstring& path, const std::string& section);
    bool LoadSection(const std::string& path, const std::string& section); ///< The path in UTF-8.
    /// The path as IniConfig answers it.
    bool LoadSection(const Utf8String& path, const std::string& section)
    {
        return LoadSection(path.ToStdString(), section);
    }
    /// The path in UTF-8.
    bool LoadSection(const char* path, const std::string& section) { return LoadSection(Utf8String{path}, section); }

    /// The value as text; `whenMissing` when there is no such section or key. An empty value is a value.
    std::string GetStringValue(const std::string& section, const std::string& key,
                               const std::string& whenMissing) const;

    /// The decimal number at the start of the value, text after it ignored; `whenMissing` when there is no such
    /// section or key.
    /// @throws std::invalid_argument saying "invalid stoi argument" when the value does not start with a number
    /// @throws std::out_of_range saying "stoi argument out of range" when the number does not fit 32 bits
    int GetIntegerValue(const std::string& section, const std::string& key, const int& whenMissing) const;

    /// Whether the value is a number other than 0. Words like "true" or "yes" are not numbers.
    /// @throws what GetIntegerValue throws
    bool GetBoolValue(const std::string& section, const std::string& key, const bool& whenMissing) const;

    /// The floating-point number at the start of the value, text after it ignored; `whenMissing` when there is no
    /// such section or key. The decimal point is that of the C locale in use.
    /// @throws std::invalid_argument saying "invalid stof argument" when the value does not start with a number
    /// @throws std::out_of_range saying "stof argument out of range" on overflow or underflow
    float GetFloatValue(const std::string& section, const std::string& key, const float& whenMissing) const;

    /// Replaces `names` by the names of all sections, in ascending order of their bytes.
    /// @return their number
    int GetSectionList(std::vector<std::string>& names) const;

    /// Replaces `pairs` by the keys of a section in the order of their lines, each with its current value. A key that
    /// occurs twice is listed twice, both times with the last value.
    ///
    /// The order is that of ALL calls of LoadFile on this object, one after the other: loading a file twice lists its
    /// keys twice, while LoadSection adds nothing.
    /// @return their number; 0 when there is no such section
    /// @throws std::out_of_range saying "invalid map<K, T> key" when the section has values but was never in a file of
    ///         LoadFile, or when a key of an earlier file no longer has a value. `pairs` then holds those before it.
    int GetKeyValuePairListBySection(const std::string& section, std::vector<IniKeyValue>& pairs) const;

private:
    class SHAREDUTILITIES_NO_EXPORT Contents; // what one load has read

    bool Load(const wchar_t* path, const std::string* section);
    const std::string_view* Find(const std::string& section, const std::string& key) const;

    std::shared_ptr<const Contents> m_values;                   // null when nothing has a value
    std::vector<std::shared_ptr<const Contents>> m_loadedFiles; // those with keys, oldest first: the order of the keys
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
