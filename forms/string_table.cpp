#include "forms/string_table.h"

#include "platform/failure.h"

#include <algorithm>
#include <string>

namespace tessavox {

namespace {

/// The texts come in blocks of 16 numbers.
constexpr int block_of(int id)
{
    return id / 16;
}

auto place_of(std::span<const StringRow> rows, int id)
{
    return std::lower_bound(rows.begin(), rows.end(), id,
        [](const StringRow& row, int wanted) { return row.id < wanted; });
}

bool has_block(std::span<const StringRow> rows, int id)
{
    const auto first = place_of(rows, block_of(id) * 16);
    return first != rows.end() && block_of(first->id) == block_of(id);
}

struct LanguageRow {
    int language_id;
    std::span<const StringRow> (*strings)();
};

constexpr LanguageRow languages[] = { { 1031, german_strings }, { 1066, strings_1066 } };

/// The language of an id without its country: the lower ten bits.
constexpr int primary(int language_id)
{
    return language_id & 0x3ff;
}

} // namespace

std::span<const StringRow> strings_of_language(int language_id)
{
    for (const LanguageRow& row : languages) {
        if (primary(row.language_id) == primary(language_id))
            return row.strings();
    }
    return {};
}

std::string StringTable::LoadResString(int id) const
{
    const std::span<const StringRow> rows = has_block(m_own, id) ? m_own : m_neutral;
    const auto found = place_of(rows, id);
    if (found == rows.end() || found->id != id)
        throw Failure("no text has the number " + std::to_string(id));
    return found->text;
}

} // namespace tessavox
