// Takes rich text apart into the smallest pieces that mean something.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tessavox::rtf {

enum class TokenKind : std::uint8_t {
    end, // of the bytes; it repeats
    open, // {
    close, // }
    bytes, // text as it stands: no control character but the tab, no brace, no backslash
    hex, // \'hh: one byte of text
    word, // \letters, with the number that may follow
    symbol, // a backslash and any other byte
    binary, // \binN with the N bytes after it, or as many as there are
};

struct Token {
    TokenKind kind = TokenKind::end;
    std::uint8_t byte = 0; // of a hex byte or symbol
    bool has_number = false;
    std::int32_t number = 0; // of a word, within plus and minus a thousand million
    std::string_view text; // the bytes, or the word without its backslash and number
};

/// A view of the bytes, which have to outlive it. Line ends, NULs and other control characters
/// between tokens mean nothing and are left out, as is a \' without two hexadecimal digits. Each
/// step takes time in proportion to the bytes that it takes.
class Tokenizer {
public:
    explicit Tokenizer(std::string_view bytes)
        : m_bytes(bytes)
    {
    }
    Token next();

private:
    bool take_escape(Token& token);
    bool take_hex(Token& token);
    void take_word(Token& token);
    void take_number(Token& token);

    std::string_view m_bytes;
    std::size_t m_at = 0;
};

} // namespace tessavox::rtf
