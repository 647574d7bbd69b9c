// Text whose characters are counted, and the step between it and the UTF-8 of everything else.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace tessavox {

/// A stretch of an unchanging UTF-16 text that several owners share. Copying one costs the same for
/// ten words and for a whole book, so a book can be handed to the voice without being copied.
/// Offsets and lengths are UTF-16 code units.
class TextSlice {
public:
    TextSlice() = default;
    TextSlice(std::u16string text)
        : m_text(std::make_shared<const std::u16string>(std::move(text)))
        , m_length(m_text->size())
    {
    }
    TextSlice(const char16_t* text)
        : TextSlice(std::u16string(text))
    {
    }
    /// The part of `text` from `offset`, at most `length` units; both are cut to what is there.
    TextSlice(std::shared_ptr<const std::u16string> text, std::size_t offset, std::size_t length)
        : m_text(std::move(text))
    {
        const std::size_t size = m_text ? m_text->size() : 0;
        m_offset = offset < size ? offset : size;
        m_length = length < size - m_offset ? length : size - m_offset;
    }

    std::u16string_view view() const
    {
        return m_text ? std::u16string_view(*m_text).substr(m_offset, m_length)
                      : std::u16string_view();
    }
    std::size_t size() const { return m_length; }
    bool empty() const { return m_length == 0; }
    /// This text and one blank. Costs nothing where the copy goes on with a blank.
    TextSlice and_a_blank() const;
    /// Whether both are the same stretch of the same copy; costs nothing.
    bool is_same(const TextSlice& other) const
    {
        return m_text == other.m_text && m_offset == other.m_offset && m_length == other.m_length;
    }
    friend bool operator==(const TextSlice& left, const TextSlice& right)
    {
        // The views' own comparison looks for the greater one, one character after the other.
        const std::u16string_view mine = left.view(), its = right.view();
        return std::equal(mine.begin(), mine.end(), its.begin(), its.end());
    }

private:
    std::shared_ptr<const std::u16string> m_text;
    std::size_t m_offset = 0;
    std::size_t m_length = 0;
};

/// UTF-16 from UTF-8. Bytes that are no UTF-8 become U+FFFD, one for each maximal bad piece.
std::u16string to_utf16(std::string_view utf8);

/// UTF-8 from UTF-16. Lone surrogates become U+FFFD.
std::string to_utf8(std::u16string_view utf16);

/// One unit for each character; lone surrogates stay.
std::u32string to_utf32(std::u16string_view utf16);

/// The character at `at`, which moves past it. A lone surrogate is returned as it is.
char32_t next_character(std::u16string_view text, std::size_t& at);
/// The same for UTF-8; a bad piece is U+FFFD.
char32_t next_character(std::string_view utf8, std::size_t& at);

void append_character(std::u16string& text, char32_t character);
/// What is no character is appended as U+FFFD.
void append_character(std::string& utf8, char32_t character);

constexpr bool is_high_surrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool is_low_surrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

/// The letters A to Z in small; everything else as it is, whatever the language.
template <std::integral Unit> constexpr Unit lower_ascii(Unit unit)
{
    return unit >= 'A' && unit <= 'Z' ? static_cast<Unit>(unit + ('a' - 'A')) : unit;
}
std::string lower_ascii(std::string_view text);

} // namespace tessavox
