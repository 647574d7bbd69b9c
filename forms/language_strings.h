// The sets of texts, one for each language that has one.
#pragma once

#include "platform/texts.h"

#include <span>

namespace tessavox {

struct StringRow {
    int id;
    const char* text;
};

// Each set runs by rising number. ------------------------------------------------------------
/// The English set, the one of last resort.
std::span<const StringRow> neutral_strings();
/// Without the blocks from 1792, 2048 and 2128 on, and with holes at 2064 to 2067.
std::span<const StringRow> german_strings();
/// Simplified Chinese texts, filed under the language id of Vietnamese.
std::span<const StringRow> strings_1066();

/// The rows that a user of that language sees instead of neutral ones; none for most. Any country's
/// variant of a language counts as the language. The ids are those of [MS-LCID].
std::span<const StringRow> strings_of_language(int language_id);

} // namespace tessavox
