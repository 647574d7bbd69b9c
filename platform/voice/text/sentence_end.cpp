#include "platform/voice/text/sentence_end.h"

#include "platform/text.h"
#include "platform/voice/text/reading_character.h"

#include <algorithm>
#include <unicode/uchar.h>

namespace tessavox::voice {

namespace {

// Abbreviations in lower case, without their last full stop. After these a sentence goes on,
constexpr std::u16string_view never_last
    = u" mr mrs ms dr prof st mt gen col capt lt sgt rev hon gov sen messrs mme mlle hr fr"
      u" e.g i.e vs cf viz ca approx z.b d.h u.a bzw bspw ggf evtl inkl vgl ";
// after these it does if a number follows ("No. 5"),
constexpr std::u16string_view not_before_number
    = u" no nos nr fig figs vol p pp ch sec art abs eq ed jan feb mar apr jun jul aug sep"
      u" sept oct nov dec ";
// and after these it ends before a capital letter only.
constexpr std::u16string_view last_before_capital = u" etc inc ltd co corp jr sr al usw ";

constexpr std::size_t longest_abbreviation = 8;

bool is_lower(char16_t c)
{
    return u_islower(c) != 0;
}

bool is_digit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

bool is_letter(char16_t c)
{
    return u_isalpha(c) != 0;
}

bool is_among(std::u16string_view words, std::u16string_view word)
{
    return words.find(u' ' + std::u16string(word) + u' ') != words.npos;
}

/// The word that ends `text`: back to white space or an opening sign.
std::u16string_view last_word(std::u16string_view text)
{
    std::size_t begin = text.size();
    while (begin > 0 && text.size() - begin <= longest_abbreviation
        && (is_wordish(text[begin - 1]) || text[begin - 1] == u'.'))
        --begin;
    return text.substr(begin);
}

/// Letters that each have a full stop of their own: "U.S", "a.m".
bool is_dotted(std::u16string_view word)
{
    if (word.size() < 3)
        return false;
    for (std::size_t at = 0; at < word.size(); ++at) {
        if (at % 2 == 0 ? !is_letter(word[at]) : word[at] != u'.')
            return false;
    }
    return word.size() % 2 == 1;
}

bool full_stop_ends(std::u16string_view before, char16_t next)
{
    const std::u16string_view word = last_word(before);
    std::u16string small(word.substr(0, longest_abbreviation + 1));
    std::ranges::transform(small, small.begin(), lower_ascii<char16_t>);
    if (is_among(never_last, small) || (is_among(not_before_number, small) && is_digit(next)))
        return false;
    if (is_among(not_before_number, small))
        return true;
    if (is_dotted(word) || is_among(last_before_capital, small))
        return !is_lower(next) && !is_digit(next);
    // An initial; but "I" ends many a sentence.
    if (word.size() == 1 && is_letter(word[0]) && !is_lower(word[0]) && word[0] != u'I')
        return false;
    // "1. Introduction": the number of a heading or of a list's row.
    const bool all_digits = !word.empty() && std::all_of(word.begin(), word.end(), is_digit);
    return !(all_digits && word.size() == before.size() && word.size() <= 3);
}

} // namespace

char16_t next_letter(std::u16string_view rest)
{
    constexpr std::size_t most_openers = 4;
    for (const char16_t c : rest.substr(0, most_openers))
        if (!is_opener(c))
            return reading_kind(c) == ReadingKind::plain ? c : u'\0';
    return 0;
}

bool sentence_ends(std::u16string_view text, char16_t next)
{
    std::size_t end = text.size();
    while (end > 0 && is_closer(text[end - 1]))
        --end;
    // "'Why?' he asked": the sentence goes on after the quote.
    if (end < text.size() && is_lower(next))
        return false;
    if (end == 0)
        return true;
    const char16_t mark = text[end - 1];
    const std::u16string_view before = text.substr(0, end - 1);
    const bool ellipsis = mark == u'.' && (before.ends_with(u'.') || before.ends_with(u". "));
    if (mark == u'\u2026' || ellipsis)
        return !is_lower(next);
    return mark != u'.' || full_stop_ends(before, next);
}

} // namespace tessavox::voice
