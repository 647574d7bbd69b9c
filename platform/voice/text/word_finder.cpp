#include "platform/voice/text/word_finder.h"

#include "platform/voice/text/reading_character.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace tessavox::voice {

namespace {

/// What a character is to a reader who looks for words.
enum class Sign : std::uint8_t {
    white,
    letter,
    digit,
    apostrophe,
    dot,
    comma,
    colon,
    hyphen,
    ampersand,
    percent,
    currency,
    spoken, // a symbol that has a name
    mark, // punctuation
    complex // left to ICU
};

constexpr Sign latin_sign(char16_t c)
{
    if ((c >= u'0' && c <= u'9') || c == 0xB2 || c == 0xB3 || c == 0xB9)
        return Sign::digit;
    if ((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || c == 0xAA || c == 0xB5
        || c == 0xBA || (c >= 0xC0 && c != 0xD7 && c != 0xF7))
        return Sign::letter;
    if (c <= 0x20 || (c >= 0x7F && c <= 0xA0))
        return Sign::white;
    constexpr std::u16string_view spoken = u"#*+<=>@|~\u00A6\u00A7\u00A9\u00AC\u00AE\u00B0\u00B1"
                                           u"\u00B6\u00BC\u00BD\u00BE\u00D7\u00F7";
    switch (c) {
    case u'\'':
        return Sign::apostrophe;
    case u'.':
        return Sign::dot;
    case u',':
        return Sign::comma;
    case u':':
        return Sign::colon;
    case u'-':
        return Sign::hyphen;
    case u'&':
        return Sign::ampersand;
    case u'%':
        return Sign::percent;
    case 0xAD: // soft hyphen
        return Sign::complex;
    case u'$':
    case 0xA2:
    case 0xA3:
    case 0xA4:
    case 0xA5:
        return Sign::currency;
    default:
        return spoken.find(c) != spoken.npos ? Sign::spoken : Sign::mark;
    }
}

constexpr std::size_t latin_end = 0x250;

/// For characters from latin_end on.
Sign wide_sign(char16_t c)
{
    switch (c) {
    case 0x2010:
    case 0x2011:
        return Sign::hyphen;
    case 0x2019:
        return Sign::apostrophe;
    case 0x2030:
        return Sign::percent;
    case 0x20AC:
        return Sign::currency;
    default:
        break;
    }
    if (is_white(c))
        return Sign::white;
    const bool mark = (c >= 0x2012 && c <= 0x2027) || c == 0x2039 || c == 0x203A;
    return mark ? Sign::mark : Sign::complex;
}

constexpr std::array<Sign, latin_end> latin_signs = [] {
    std::array<Sign, latin_end> table{};
    for (std::size_t each = 0; each < latin_end; ++each)
        table[each] = latin_sign(static_cast<char16_t>(each));
    return table;
}();

Sign sign_of(char16_t c)
{
    return c < latin_end ? latin_signs[c] : wide_sign(c);
}

bool is_word(Sign sign)
{
    return sign == Sign::letter || sign == Sign::digit;
}

bool is_spoken(Sign sign)
{
    return sign == Sign::spoken || sign == Sign::currency || sign == Sign::percent
        || sign == Sign::ampersand;
}

/// Whether `sign` between two characters holds a word together. `lone`: the part of the word
/// before the sign is one character long.
bool joins(Sign before, Sign sign, Sign after, bool lone)
{
    const bool digits = before == Sign::digit && after == Sign::digit;
    const bool letters = before == Sign::letter && after == Sign::letter;
    switch (sign) {
    case Sign::apostrophe:
        return is_word(before) && after == Sign::letter;
    case Sign::hyphen:
        return is_word(before) && is_word(after);
    case Sign::dot:
        return digits || (letters && lone);
    case Sign::comma:
    case Sign::colon:
        return digits;
    case Sign::ampersand:
        return letters;
    default:
        return false;
    }
}

/// The end of the word that begins at `begin`; `end` is the end of the text without a blank.
std::uint32_t word_end(std::u16string_view text, std::uint32_t begin, std::uint32_t end)
{
    std::uint32_t at = begin + 1;
    std::uint32_t part = begin;
    for (;;) {
        while (at < end && is_word(sign_of(text[at])))
            ++at;
        if (at + 1 >= end
            || !joins(
                sign_of(text[at - 1]), sign_of(text[at]), sign_of(text[at + 1]), at - part == 1))
            break;
        part = at + 1;
        at += 2;
    }
    const bool percent
        = at < end && sign_of(text[at]) == Sign::percent && sign_of(text[at - 1]) == Sign::digit;
    return percent ? at + 1 : at;
}

/// The words of a text without blanks in which nothing is complex.
void find_simple(std::u16string_view text, std::uint32_t begin, std::uint32_t end, WordRule rule,
    std::vector<FoundWord>& found)
{
    for (std::uint32_t at = begin; at < end;) {
        const Sign sign = sign_of(text[at]);
        std::uint32_t next = at + 1;
        if (is_word(sign)) {
            next = word_end(text, at, end);
        } else if (sign == Sign::currency && next < end && sign_of(text[next]) == Sign::digit) {
            next = word_end(text, next, end);
        } else if (is_spoken(sign)) {
            while (next < end && text[next] == text[at])
                ++next;
        } else if (rule == WordRule::words) {
            at = next;
            continue;
        }
        found.push_back({ at, next });
        at = next;
    }
}

} // namespace

/// An ICU break iterator, or none if ICU has no data.
class WordFinder::Boundaries {
public:
    explicit Boundaries(UBreakIteratorType type)
    {
        UErrorCode status = U_ZERO_ERROR;
        m_iterator.reset(ubrk_open(type, "", nullptr, 0, &status));
        if (U_FAILURE(status))
            m_iterator.reset();
    }

    /// Calls piece(begin, end, status) for each piece between two boundaries.
    template <class Call> void each_piece(std::u16string_view text, Call piece)
    {
        UErrorCode status = U_ZERO_ERROR;
        if (m_iterator)
            ubrk_setText(m_iterator.get(), text.data(), static_cast<int32_t>(text.size()), &status);
        if (!m_iterator || U_FAILURE(status)) {
            piece(0u, static_cast<std::uint32_t>(text.size()), int32_t{ UBRK_WORD_LETTER });
            return;
        }
        int32_t begin = ubrk_first(m_iterator.get());
        for (int32_t end = ubrk_next(m_iterator.get()); end != UBRK_DONE;
             begin = end, end = ubrk_next(m_iterator.get())) {
            piece(static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end),
                ubrk_getRuleStatus(m_iterator.get()));
        }
    }

private:
    struct Close {
        void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
    };
    std::unique_ptr<UBreakIterator, Close> m_iterator;
};

/// A piece between two boundaries of ICU, as the rules above see it.
struct WordFinder::Piece {
    FoundWord extent;
    Sign sign; // letter: any word
    bool joinable; // false for scripts whose words stand without blanks
};

namespace {

Sign sign_of_piece(std::u16string_view piece, int32_t status)
{
    if (status >= UBRK_WORD_LETTER)
        return Sign::letter;
    if (status >= UBRK_WORD_NUMBER)
        return Sign::digit;
    const Sign sign = sign_of(piece[0]);
    if (sign != Sign::complex)
        return sign;
    UChar32 point = 0;
    U16_GET(piece.data(), 0, 0, static_cast<int32_t>(piece.size()), point);
    if (u_isUWhiteSpace(point))
        return Sign::white;
    const uint32_t kinds = U_GET_GC_MASK(point);
    if (kinds & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK))
        return Sign::letter;
    if (kinds & U_GC_SC_MASK)
        return Sign::currency;
    if ((kinds & (U_GC_SM_MASK | U_GC_SO_MASK | U_GC_SK_MASK))
        || u_hasBinaryProperty(point, UCHAR_EXTENDED_PICTOGRAPHIC))
        return Sign::spoken;
    // Format characters have neither shape nor sound.
    return kinds & (U_GC_CF_MASK | U_GC_CC_MASK) ? Sign::white : Sign::mark;
}

bool is_complex(std::u16string_view text, std::uint32_t begin, std::uint32_t end)
{
    return std::any_of(text.begin() + begin, text.begin() + end,
        [](char16_t c) { return sign_of(c) == Sign::complex; });
}

std::uint32_t skip_white(std::u16string_view text, std::uint32_t at)
{
    while (at < text.size() && sign_of(text[at]) == Sign::white)
        ++at;
    return at;
}

} // namespace

WordFinder::WordFinder() = default;
WordFinder::~WordFinder() = default;
WordFinder::WordFinder(WordFinder&&) noexcept = default;
WordFinder& WordFinder::operator=(WordFinder&&) noexcept = default;

void WordFinder::find(std::u16string_view text, WordRule rule, std::vector<FoundWord>& found)
{
    if (rule == WordRule::characters)
        return find_characters(text, found);
    for (std::uint32_t begin = skip_white(text, 0); begin < text.size();
         begin = skip_white(text, begin)) {
        bool complex = false;
        std::uint32_t end = begin;
        for (; end < text.size(); ++end) {
            const Sign sign = sign_of(text[end]);
            if (sign == Sign::white)
                break;
            complex = complex || sign == Sign::complex;
        }
        if (complex) {
            begin = find_complex(text, begin, rule, found);
        } else {
            find_simple(text, begin, end, rule, found);
            begin = end;
        }
    }
}

/// Finds the words from `begin` on up to a part between blanks that needs no ICU; returns its
/// place.
std::uint32_t WordFinder::find_complex(
    std::u16string_view text, std::uint32_t begin, WordRule rule, std::vector<FoundWord>& found)
{
    std::uint32_t region_end = begin;
    for (std::uint32_t part = begin; part < text.size();) {
        std::uint32_t end = part;
        while (end < text.size() && sign_of(text[end]) != Sign::white)
            ++end;
        if (!is_complex(text, part, end))
            break;
        region_end = end;
        part = skip_white(text, end);
    }
    const std::u16string_view region = text.substr(begin, region_end - begin);
    if (!m_words)
        m_words = std::make_unique<Boundaries>(UBRK_WORD);
    m_pieces.clear();
    m_words->each_piece(region, [&](std::uint32_t from, std::uint32_t to, int32_t status) {
        const Sign sign = sign_of_piece(region.substr(from, to - from), status);
        m_pieces.push_back({ { begin + from, begin + to }, sign, status < UBRK_WORD_KANA });
    });
    append_pieces(text, rule, found);
    return region_end;
}

void WordFinder::append_pieces(
    std::u16string_view text, WordRule rule, std::vector<FoundWord>& found) const
{
    bool open = false; // the last word found may still grow
    for (std::size_t at = 0; at < m_pieces.size(); ++at) {
        const Piece& piece = m_pieces[at];
        const Sign sign = piece.sign;
        const Piece* next = at + 1 < m_pieces.size() ? &m_pieces[at + 1] : nullptr;
        const Sign before = at > 0 ? m_pieces[at - 1].sign : Sign::white;
        const bool next_word = next && is_word(next->sign) && next->joinable;
        const bool connects = open && next_word && (sign == Sign::hyphen || sign == Sign::ampersand)
            && joins(before, sign, next->sign, false);
        if (connects || (open && sign == Sign::percent && before == Sign::digit)) {
            found.back().end = connects ? next->extent.end : piece.extent.end;
            at += connects ? 1 : 0;
            open = connects;
            continue;
        }
        const bool repeats = is_spoken(sign) && before == sign && at > 0
            && piece.extent.end - piece.extent.begin == 1
            && text[piece.extent.begin] == text[m_pieces[at - 1].extent.begin]
            && m_pieces[at - 1].extent.end - m_pieces[at - 1].extent.begin == 1;
        const bool amount = sign == Sign::digit && before == Sign::currency;
        if ((repeats || amount) && !found.empty() && found.back().end == piece.extent.begin) {
            found.back().end = piece.extent.end;
        } else if (is_word(sign) || is_spoken(sign)
            || (sign != Sign::white && rule == WordRule::words_and_punctuation)) {
            found.push_back(piece.extent);
        } else {
            open = false;
            continue;
        }
        open = is_word(sign) && piece.joinable;
    }
}

void WordFinder::find_characters(std::u16string_view text, std::vector<FoundWord>& found)
{
    const auto size = static_cast<std::uint32_t>(text.size());
    if (!is_complex(text, 0, size)) {
        for (std::uint32_t at = 0; at < size; ++at) {
            if (sign_of(text[at]) != Sign::white)
                found.push_back({ at, at + 1 });
        }
        return;
    }
    if (!m_characters)
        m_characters = std::make_unique<Boundaries>(UBRK_CHARACTER);
    m_characters->each_piece(text, [&](std::uint32_t from, std::uint32_t to, int32_t) {
        if (!is_white(text[from]))
            found.push_back({ from, to });
    });
}

} // namespace tessavox::voice
