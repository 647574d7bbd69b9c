#include "platform/text_search.h"

#include "platform/failure.h"
#include "platform/text.h"

#include <algorithm>
#include <string>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/uset.h>
#include <unicode/utf16.h>

namespace tessavox {
namespace {

char32_t folded(char32_t character)
{
    if (character < 0x80)
        return lower_ascii(character);
    return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(character), U_FOLD_CASE_DEFAULT));
}

/// Compares pieces of text as wanted, and finds the places where a match may begin.
class Pattern {
public:
    Pattern(std::u16string_view wanted, bool match_case)
        : m_wanted(wanted)
        , m_match_case(match_case)
    {
        if (!match_case)
            find_first_units();
        else
            m_first_units.push_back(wanted.front());
    }

    /// The first place from `at` on, or npos.
    std::size_t find(std::u16string_view text, std::size_t at) const
    {
        if (m_match_case)
            return text.find(m_wanted, at);
        while (at + m_wanted.size() <= text.size()) {
            const std::size_t end = text.size() - m_wanted.size() + 1;
            at = next_candidate(text, at, end);
            if (at == end)
                break;
            if (is_at(text, at))
                return at;
            ++at;
        }
        return std::u16string_view::npos;
    }

private:
    /// All units with which a character begins that folds as the first wanted one does.
    void find_first_units()
    {
        std::size_t at = 0;
        const char32_t first = next_character(m_wanted, at);
        USet* const alike = uset_open(static_cast<UChar32>(first), static_cast<UChar32>(first));
        uset_closeOver(alike, USET_CASE_INSENSITIVE);
        for (std::int32_t i = 0; i < uset_size(alike); ++i) {
            const UChar32 character = uset_charAt(alike, i);
            if (character < 0 || folded(static_cast<char32_t>(character)) != folded(first))
                continue;
            std::u16string units;
            append_character(units, static_cast<char32_t>(character));
            m_first_units.push_back(units.front());
        }
        uset_close(alike);
        if (m_first_units.empty())
            m_first_units.push_back(m_wanted.front()); // half of a surrogate pair
    }

    std::size_t next_candidate(std::u16string_view text, std::size_t at, std::size_t end) const
    {
        // Nearly all letters have two forms, and this loop is nearly all of a search.
        const char16_t one = m_first_units.front();
        const char16_t other = m_first_units.back();
        if (m_first_units.size() <= 2) {
            while (at < end && text[at] != one && text[at] != other)
                ++at;
        } else {
            while (at < end && m_first_units.find(text[at]) == std::u16string::npos)
                ++at;
        }
        return at;
    }

    bool is_at(std::u16string_view text, std::size_t at) const
    {
        const std::u16string_view piece = text.substr(at, m_wanted.size());
        for (std::size_t here = 0, there = 0; here < m_wanted.size();) {
            if (here != there || there >= piece.size())
                return false;
            if (folded(next_character(m_wanted, here)) != folded(next_character(piece, there)))
                return false;
        }
        return true;
    }

    std::u16string_view m_wanted;
    bool m_match_case;
    std::u16string m_first_units;
};

enum class Edge { boundary, inside, doubtful };

/// What the two characters beside a place say by themselves, which is nearly always enough.
Edge edge_between(char32_t before, char32_t after)
{
    const auto kind = [](char32_t character) {
        return u_getIntPropertyValue(static_cast<UChar32>(character), UCHAR_WORD_BREAK);
    };
    const auto joins = [](std::int32_t word_break) {
        return word_break == U_WB_ALETTER || word_break == U_WB_NUMERIC
            || word_break == U_WB_EXTENDNUMLET;
    };
    const auto is_blank = [](char32_t character) {
        return character == U' ' || character == U'\n' || character == U'\t';
    };
    const std::int32_t kind_before = kind(before);
    const std::int32_t kind_after = kind(after);
    if (joins(kind_before) && joins(kind_after))
        return Edge::inside;
    if ((is_blank(before) && joins(kind_after)) || (joins(kind_before) && is_blank(after)))
        return Edge::boundary;
    return Edge::doubtful;
}

} // namespace

/// Unicode's word boundaries, looked for close around a place so that a long line costs no more.
class TextSearch::Words {
public:
    Words()
    {
        UErrorCode status = U_ZERO_ERROR;
        m_iterator = ubrk_open(UBRK_WORD, "", nullptr, 0, &status);
        if (U_FAILURE(status))
            throw Failure("no words can be told apart");
    }
    ~Words() { ubrk_close(m_iterator); }
    Words(const Words&) = delete;
    Words& operator=(const Words&) = delete;

    bool is_boundary(std::u16string_view text, std::size_t at)
    {
        constexpr std::size_t surroundings = 200; // units on either side; longer than any word
        const std::size_t start = at - std::min(at, surroundings);
        const std::u16string_view piece = text.substr(start, at - start + surroundings);
        UErrorCode status = U_ZERO_ERROR;
        ubrk_setText(m_iterator, piece.data(), static_cast<std::int32_t>(piece.size()), &status);
        return U_SUCCESS(status)
            && ubrk_isBoundary(m_iterator, static_cast<std::int32_t>(at - start));
    }

private:
    UBreakIterator* m_iterator = nullptr;
};

TextSearch::TextSearch() = default;
TextSearch::~TextSearch() = default;

std::optional<std::size_t> TextSearch::find(
    std::u16string_view text, std::u16string_view wanted, std::size_t start, int options)
{
    if (wanted.empty() || start > text.size())
        return std::nullopt;
    const auto is_boundary = [&](std::size_t at) {
        if (at == 0 || at == text.size())
            return true;
        std::size_t after = at;
        const bool is_second_half = at > 1 && is_low_surrogate(text[at - 1]);
        std::size_t before = at - (is_second_half ? 2 : 1);
        const Edge edge = edge_between(next_character(text, before), next_character(text, after));
        if (edge != Edge::doubtful)
            return edge == Edge::boundary;
        if (!m_words)
            m_words = std::make_unique<Words>();
        return m_words->is_boundary(text, at);
    };
    const Pattern pattern(wanted, (options & find_match_case) != 0);
    for (std::size_t at = start;; ++at) {
        at = pattern.find(text, at);
        if (at == std::u16string_view::npos)
            return std::nullopt;
        if (!(options & find_whole_word) || (is_boundary(at) && is_boundary(at + wanted.size())))
            return at;
    }
}

} // namespace tessavox
