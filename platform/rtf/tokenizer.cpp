#include "platform/rtf/tokenizer.h"

#include <algorithm>
#include <array>

namespace tessavox::rtf {
namespace {

constexpr std::int32_t largest_number = 1'000'000'000;

enum class ByteClass : std::uint8_t { text, ignored, open, close, backslash };

constexpr std::array<ByteClass, 256> classify()
{
    std::array<ByteClass, 256> classes{};
    for (int byte = 0; byte < 0x20; ++byte)
        classes[static_cast<std::size_t>(byte)] = ByteClass::ignored;
    classes['\t'] = ByteClass::text;
    classes['{'] = ByteClass::open;
    classes['}'] = ByteClass::close;
    classes['\\'] = ByteClass::backslash;
    return classes;
}

constexpr auto byte_classes = classify();

ByteClass class_of(char byte)
{
    return byte_classes[static_cast<std::uint8_t>(byte)];
}

bool is_letter(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

bool is_digit(char byte)
{
    return byte >= '0' && byte <= '9';
}

int hex_digit(char byte)
{
    if (is_digit(byte))
        return byte - '0';
    const char lower = static_cast<char>(byte | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

Token Tokenizer::next()
{
    Token token;
    while (m_at < m_bytes.size()) {
        const std::size_t begin = m_at++;
        switch (class_of(m_bytes[begin])) {
        case ByteClass::ignored:
            continue;
        case ByteClass::open:
            token.kind = TokenKind::open;
            return token;
        case ByteClass::close:
            token.kind = TokenKind::close;
            return token;
        case ByteClass::backslash:
            if (take_escape(token))
                return token;
            continue;
        case ByteClass::text:
            while (m_at < m_bytes.size() && class_of(m_bytes[m_at]) == ByteClass::text)
                ++m_at;
            token.kind = TokenKind::bytes;
            token.text = m_bytes.substr(begin, m_at - begin);
            return token;
        }
    }
    return token;
}

bool Tokenizer::take_escape(Token& token)
{
    if (m_at >= m_bytes.size())
        return false;
    if (is_letter(m_bytes[m_at])) {
        take_word(token);
        return true;
    }
    const char byte = m_bytes[m_at++];
    if (byte == '\'')
        return take_hex(token);
    token.kind = TokenKind::symbol;
    token.byte = static_cast<std::uint8_t>(byte);
    if (byte == '\r' && m_at < m_bytes.size() && m_bytes[m_at] == '\n')
        ++m_at;
    return true;
}

bool Tokenizer::take_hex(Token& token)
{
    const int high = m_at < m_bytes.size() ? hex_digit(m_bytes[m_at]) : -1;
    const int low = m_at + 1 < m_bytes.size() ? hex_digit(m_bytes[m_at + 1]) : -1;
    if (high < 0 || low < 0)
        return false;
    m_at += 2;
    token.kind = TokenKind::hex;
    token.byte = static_cast<std::uint8_t>(high << 4 | low);
    return true;
}

void Tokenizer::take_word(Token& token)
{
    const std::size_t begin = m_at;
    while (m_at < m_bytes.size() && is_letter(m_bytes[m_at]))
        ++m_at;
    token.kind = TokenKind::word;
    token.text = m_bytes.substr(begin, m_at - begin);
    take_number(token);
    if (m_at < m_bytes.size() && m_bytes[m_at] == ' ')
        ++m_at; // the blank that ends the word is part of it
    if (token.text == "bin") {
        token.kind = TokenKind::binary;
        m_at
            += std::min(static_cast<std::size_t>(std::max(token.number, 0)), m_bytes.size() - m_at);
    }
}

void Tokenizer::take_number(Token& token)
{
    std::size_t at = m_at;
    const bool is_negative = at < m_bytes.size() && m_bytes[at] == '-';
    at += is_negative ? 1 : 0;
    if (at >= m_bytes.size() || !is_digit(m_bytes[at]))
        return;
    std::int64_t number = 0;
    for (; at < m_bytes.size() && is_digit(m_bytes[at]); ++at)
        number = std::min<std::int64_t>(number * 10 + (m_bytes[at] - '0'), largest_number);
    token.has_number = true;
    token.number = static_cast<std::int32_t>(is_negative ? -number : number);
    m_at = at;
}

} // namespace tessavox::rtf
