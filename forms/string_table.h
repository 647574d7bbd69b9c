// The table of all texts that users see, a set of rows for each language.
#pragma once

#include "forms/language_strings.h"
#include "platform/texts.h"

#include <span>

namespace tessavox {

/// The texts of one language. Numbers come in blocks of 16: where the language has a block, only
/// that block counts, holes included; where it has none, the neutral one does.
class StringTable : public Texts {
public:
    /// `own` are the language's rows, by rising number; none for the neutral language.
    explicit StringTable(
        std::span<const StringRow> own = {}, std::span<const StringRow> neutral = neutral_strings())
        : m_own(own)
        , m_neutral(neutral)
    {
    }
    /// Another language from now on; windows show it when they are localised the next time.
    void set_language(std::span<const StringRow> own) { m_own = own; }

    std::string LoadResString(int id) const override;

private:
    std::span<const StringRow> m_own;
    std::span<const StringRow> m_neutral;
};

} // namespace tessavox
