#include "platform/text.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace tessavox {

namespace {

constexpr char32_t replacement = 0xFFFD;

} // namespace

TextSlice TextSlice::and_a_blank() const
{
    const std::size_t end = m_offset + m_length;
    if (m_text && end < m_text->size() && (*m_text)[end] == u' ')
        return { m_text, m_offset, m_length + 1 };
    std::u16string longer;
    longer.reserve(m_length + 1);
    longer += view();
    longer += u' ';
    return longer;
}

char32_t next_character(std::u16string_view text, std::size_t& at)
{
    char32_t character = 0;
    U16_NEXT(text.data(), at, text.size(), character);
    return character;
}

char32_t next_character(std::string_view utf8, std::size_t& at)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(bytes, at, utf8.size(), character);
    return static_cast<char32_t>(character);
}

void append_character(std::u16string& text, char32_t character)
{
    if (character >= 0x10000) {
        text.push_back(U16_LEAD(character));
        text.push_back(U16_TRAIL(character));
    } else {
        text.push_back(static_cast<char16_t>(character));
    }
}

void append_character(std::string& utf8, char32_t character)
{
    if (character > 0x10FFFF || U_IS_SURROGATE(character))
        character = replacement;
    char bytes[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, character);
    utf8.append(bytes, length);
}

std::u16string to_utf16(std::string_view utf8)
{
    std::u16string text;
    text.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();)
        append_character(text, next_character(utf8, at));
    return text;
}

std::string to_utf8(std::u16string_view utf16)
{
    std::string utf8;
    utf8.reserve(utf16.size());
    for (std::size_t at = 0; at < utf16.size();)
        append_character(utf8, next_character(utf16, at));
    return utf8;
}

std::u32string to_utf32(std::u16string_view utf16)
{
    std::u32string characters;
    for (std::size_t at = 0; at < utf16.size();)
        characters.push_back(next_character(utf16, at));
    return characters;
}

std::string lower_ascii(std::string_view text)
{
    std::string lower(text);
    for (char& letter : lower)
        letter = lower_ascii(letter);
    return lower;
}

} // namespace tessavox
