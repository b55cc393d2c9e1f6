#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace FraxoReg
{
/// What a verb talks to.
struct Console
{
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool outIsTerminal = false;
    bool errIsTerminal = false;

    /// Asks until the answer is yes or no. The end of the input is a no.
    bool Confirm(const std::string& question) const;

    /// The text for `out`: exact for files and programs; a terminal gets control characters escaped, for data must not
    /// move the cursor or hide behind it.
    std::string Shown(std::string_view text) const;
};

inline constexpr const char* Completed = "The operation completed successfully.\n";
inline constexpr const char* Canceled = "The operation was canceled by the user.\n";
} // namespace FraxoReg
