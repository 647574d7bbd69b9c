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

/// What the words are put together from: a run of letters and digits, or one sign.
struct WordFinder::Piece {
    FoundWord extent;
    Sign first; // of its first character and its last; letter: any word
    Sign last;
    bool joinable; // false for scripts whose words stand without blanks
    std::uint32_t length() const { return extent.end - extent.begin; }
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
        std::uint32_t end = begin;
        while (end < text.size() && sign_of(text[end]) != Sign::white)
            ++end;
        m_pieces.clear();
        if (is_complex(text, begin, end)) {
            begin = part_by_icu(text, begin);
        } else {
            part_simple(text, begin, end);
            begin = end;
        }
        append_pieces(text, rule, found);
    }
}

/// The pieces of a text without blanks in which nothing is complex.
void WordFinder::part_simple(std::u16string_view text, std::uint32_t begin, std::uint32_t end)
{
    while (begin < end) {
        std::uint32_t next = begin + 1;
        while (is_word(sign_of(text[begin])) && next < end && is_word(sign_of(text[next])))
            ++next;
        m_pieces.push_back(
            { { begin, next }, sign_of(text[begin]), sign_of(text[next - 1]), true });
        begin = next;
    }
}

/// The pieces from `begin` on up to a part between blanks that needs no ICU; returns its place.
std::uint32_t WordFinder::part_by_icu(std::u16string_view text, std::uint32_t begin)
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
    m_words->each_piece(region, [&](std::uint32_t from, std::uint32_t to, int32_t status) {
        const Sign sign = sign_of_piece(region.substr(from, to - from), status);
        m_pieces.push_back({ { begin + from, begin + to }, sign, sign, status < UBRK_WORD_KANA });
    });
    return region_end;
}

void WordFinder::append_pieces(
    std::u16string_view text, WordRule rule, std::vector<FoundWord>& found) const
{
    bool open = false; // the last word found may still grow
    for (std::size_t at = 0; at < m_pieces.size(); ++at) {
        const Piece& piece = m_pieces[at];
        const Piece* before = at > 0 ? &m_pieces[at - 1] : nullptr;
        const Piece* next = at + 1 < m_pieces.size() ? &m_pieces[at + 1] : nullptr;
        const bool connects = open && next && is_word(next->first) && next->joinable
            && joins(before->last, piece.first, next->first, before->length() == 1);
        if (connects || (open && piece.first == Sign::percent && before->last == Sign::digit)) {
            found.back().end = connects ? next->extent.end : piece.extent.end;
            at += connects ? 1 : 0;
            open = connects;
            continue;
        }
        const bool repeats = before && is_spoken(piece.first) && before->length() == 1
            && piece.length() == 1 && text[piece.extent.begin] == text[before->extent.begin];
        const bool amount = before && piece.first == Sign::digit && before->last == Sign::currency;
        if ((repeats || amount) && !found.empty() && found.back().end == piece.extent.begin) {
            found.back().end = piece.extent.end;
        } else if (is_word(piece.first) || is_spoken(piece.first)
            || (piece.first != Sign::white && rule == WordRule::words_and_punctuation)) {
            found.push_back(piece.extent);
        } else {
            open = false;
            continue;
        }
        open = is_word(piece.first) && piece.joinable;
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
