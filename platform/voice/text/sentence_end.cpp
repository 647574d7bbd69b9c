#include "platform/voice/text/sentence_end.h"

#include "platform/text.h"
#include "platform/voice/text/reading_character.h"

#include <algorithm>
#include <unicode/uchar.h>

namespace tessavox::voice {

namespace {

/// What an abbreviation says about the full stop after it.
enum class Stop {
    never, // the sentence goes on: "Mr.", "e.g."
    before_number, // no end if a number follows: "No. 5"
    before_capital, // an end if a capital letter follows: "etc."
};

struct AbbreviationRow {
    std::u16string_view word; // in lower case, without its last full stop
    Stop stop;
};

constexpr AbbreviationRow abbreviations[] = {
    { u"mr", Stop::never },
    { u"mrs", Stop::never },
    { u"ms", Stop::never },
    { u"dr", Stop::never },
    { u"prof", Stop::never },
    { u"st", Stop::never },
    { u"mt", Stop::never },
    { u"gen", Stop::never },
    { u"col", Stop::never },
    { u"capt", Stop::never },
    { u"lt", Stop::never },
    { u"sgt", Stop::never },
    { u"rev", Stop::never },
    { u"hon", Stop::never },
    { u"gov", Stop::never },
    { u"sen", Stop::never },
    { u"messrs", Stop::never },
    { u"mme", Stop::never },
    { u"mlle", Stop::never },
    { u"hr", Stop::never },
    { u"fr", Stop::never },
    { u"e.g", Stop::never },
    { u"i.e", Stop::never },
    { u"vs", Stop::never },
    { u"cf", Stop::never },
    { u"viz", Stop::never },
    { u"ca", Stop::never },
    { u"approx", Stop::never },
    { u"z.b", Stop::never },
    { u"d.h", Stop::never },
    { u"u.a", Stop::never },
    { u"bzw", Stop::never },
    { u"bspw", Stop::never },
    { u"ggf", Stop::never },
    { u"evtl", Stop::never },
    { u"inkl", Stop::never },
    { u"vgl", Stop::never },
    { u"no", Stop::before_number },
    { u"nos", Stop::before_number },
    { u"nr", Stop::before_number },
    { u"fig", Stop::before_number },
    { u"figs", Stop::before_number },
    { u"vol", Stop::before_number },
    { u"p", Stop::before_number },
    { u"pp", Stop::before_number },
    { u"ch", Stop::before_number },
    { u"sec", Stop::before_number },
    { u"art", Stop::before_number },
    { u"abs", Stop::before_number },
    { u"eq", Stop::before_number },
    { u"ed", Stop::before_number },
    { u"jan", Stop::before_number },
    { u"feb", Stop::before_number },
    { u"mar", Stop::before_number },
    { u"apr", Stop::before_number },
    { u"jun", Stop::before_number },
    { u"jul", Stop::before_number },
    { u"aug", Stop::before_number },
    { u"sep", Stop::before_number },
    { u"sept", Stop::before_number },
    { u"oct", Stop::before_number },
    { u"nov", Stop::before_number },
    { u"dec", Stop::before_number },
    { u"etc", Stop::before_capital },
    { u"inc", Stop::before_capital },
    { u"ltd", Stop::before_capital },
    { u"co", Stop::before_capital },
    { u"corp", Stop::before_capital },
    { u"jr", Stop::before_capital },
    { u"sr", Stop::before_capital },
    { u"al", Stop::before_capital },
    { u"usw", Stop::before_capital },
};

constexpr std::size_t longest_abbreviation = 8;

bool is_lower(char16_t c)
{
    return c < 0x80 ? c >= u'a' && c <= u'z' : u_islower(c) != 0;
}

bool is_digit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

bool is_letter(char16_t c)
{
    return c < 0x80 ? (lower_ascii(c) >= u'a' && lower_ascii(c) <= u'z') : u_isalpha(c) != 0;
}

const AbbreviationRow* find_abbreviation(std::u16string_view word)
{
    if (word.size() > longest_abbreviation)
        return nullptr;
    const auto row = std::find_if(
        std::begin(abbreviations), std::end(abbreviations), [&](const AbbreviationRow& each) {
            return std::equal(word.begin(), word.end(), each.word.begin(), each.word.end(),
                [](char16_t a, char16_t b) { return lower_ascii(a) == b; });
        });
    return row == std::end(abbreviations) ? nullptr : row;
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
    if (const AbbreviationRow* row = find_abbreviation(word)) {
        switch (row->stop) {
        case Stop::never:
            return false;
        case Stop::before_number:
            return !is_digit(next);
        case Stop::before_capital:
            return !is_lower(next) && !is_digit(next);
        }
    }
    if (is_dotted(word))
        return !is_lower(next) && !is_digit(next);
    // An initial; but "I" ends many a sentence.
    if (word.size() == 1 && is_letter(word[0]) && !is_lower(word[0]) && word[0] != u'I')
        return false;
    // "1. Introduction": the number of a heading or of a list's row.
    const bool all_digits = !word.empty() && std::all_of(word.begin(), word.end(), is_digit);
    return !(all_digits && word.size() == before.size() && word.size() <= 3);
}

bool is_opener(char16_t c)
{
    constexpr std::u16string_view openers
        = u"\"'([{\u00A1\u00AB\u00BB\u00BF\u2018\u201A\u201C\u201D\u201E\u2039\u203A\u3008"
          u"\u300A\u300C\u300E\u3010";
    return openers.find(c) != std::u16string_view::npos;
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
