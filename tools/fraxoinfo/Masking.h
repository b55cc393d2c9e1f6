#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Answer.h"

namespace FraxoInfo
{
/// Leaves out of a text what must not leave the machine unasked.
class Masking final
{
public:
    /// Finds the names of the user, the account and the project, the e-mail address, and every stored text that these
    /// answers came from and that is neither a path nor a number nor one of the product's own words.
    explicit Masking(const std::vector<Answer>& answers);

    /// The text with a placeholder for each, whatever the letter case. What is short is replaced only as a whole word:
    /// a user called "A" must not take every A out of the report.
    std::string Apply(std::string_view text) const;

private:
    struct Personal
    {
        std::string text; ///< In small letters.
        const char* placeholder;
    };

    void Add(std::string_view text, const char* placeholder);

    std::vector<Personal> m_personal; ///< The longest first.
};
} // namespace FraxoInfo
