#pragma once

#include <string>
#include <string_view>

namespace FraxoReg
{
/// What `/f` looks for: `*` stands for any characters and `?` for one.
class Pattern final
{
public:
    enum class Case
    {
        Ignored,
        Matters
    };
    enum class Extent
    {
        Anywhere, ///< A part of the text is enough.
        Whole
    };

    Pattern(std::string_view text, Case letterCase, Extent extent);

    bool Matches(std::string_view text) const;

private:
    Case m_case;
    std::string m_text;
};
} // namespace FraxoReg
