#include "platform/voice/text/utterance_parts.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

/// The tokens of a part: `first` up to, not including, `last`.
struct TokenRange {
    std::uint32_t first;
    std::uint32_t last;
};

void copy_bookmarks(const Utterance& whole, TokenRange range, Utterance& part)
{
    const bool at_end = range.last == whole.tokens.size();
    for (const BookmarkPlace& bookmark : whole.bookmarks)
        if (bookmark.token >= range.first && (bookmark.token < range.last || at_end))
            part.bookmarks.push_back({ bookmark.token - range.first, bookmark.name });
}

void copy_levels(const Utterance& whole, TokenRange range, Utterance& part)
{
    for (const LevelChange& change : whole.levels) {
        if (change.token >= range.last && change.token > 0)
            return;
        if (change.token <= range.first)
            part.levels = { { 0, change.percent } };
        else
            part.levels.push_back({ change.token - range.first, change.percent });
    }
}

void copy_contexts(const Utterance& whole, std::size_t begin, std::size_t end, Utterance& part)
{
    for (const ContextHint& hint : whole.contexts) {
        const std::size_t from = std::max<std::size_t>(hint.begin, begin);
        const std::size_t to = std::min<std::size_t>(hint.begin + hint.length, end);
        if (from < to)
            part.contexts.push_back({ static_cast<std::uint32_t>(from - begin),
                static_cast<std::uint32_t>(to - from), hint.context });
    }
}

} // namespace

Utterance part_of(const Utterance& utterance, std::size_t begin, std::size_t end)
{
    const auto by_begin = [](const Token& token, std::size_t place) { return token.begin < place; };
    const auto first
        = std::lower_bound(utterance.tokens.begin(), utterance.tokens.end(), begin, by_begin);
    const auto last = std::lower_bound(first, utterance.tokens.end(), end, by_begin);
    const TokenRange range{ static_cast<std::uint32_t>(first - utterance.tokens.begin()),
        static_cast<std::uint32_t>(last - utterance.tokens.begin()) };
    Utterance part;
    part.text = utterance.text.substr(begin, end - begin);
    part.tokens.assign(first, last);
    for (Token& token : part.tokens)
        token.begin -= static_cast<std::uint32_t>(begin);
    part.style = utterance.style;
    copy_contexts(utterance, begin, end, part);
    copy_bookmarks(utterance, range, part);
    copy_levels(utterance, range, part);
    return part;
}

Utterance rest_of(const Utterance& utterance, std::size_t first)
{
    if (first == 0)
        return utterance;
    Utterance rest = part_of(utterance, utterance.tokens[first].begin, utterance.text.size());
    rest.ends_sentence = utterance.ends_sentence;
    return rest;
}

Utterance start_of(const Utterance& utterance, std::size_t end)
{
    Utterance start = part_of(utterance, 0, utterance.tokens[end].begin);
    start.pronunciation = utterance.pronunciation;
    start.sentence = utterance.sentence;
    return start;
}

std::size_t division_of(const Utterance& utterance, std::size_t most_units)
{
    if (utterance.text.size() <= most_units || !utterance.pronunciation.empty())
        return 0;
    constexpr std::u16string_view marks = u",;:)";
    std::size_t at_mark = 0;
    std::size_t at_half = 0;
    for (std::size_t i = 1; i < utterance.tokens.size(); ++i) {
        const Token& token = utterance.tokens[i];
        if (token.begin > most_units)
            break;
        const Token& before = utterance.tokens[i - 1];
        const std::u16string_view between
            = std::u16string_view(utterance.text)
                  .substr(before.begin + before.length, token.begin - before.begin - before.length);
        if (token.begin > most_units / 4 && between.find_first_of(marks) != between.npos)
            at_mark = i;
        if (token.begin <= most_units / 2)
            at_half = i;
    }
    return at_mark > 0 ? at_mark : at_half;
}

} // namespace tessavox::voice
