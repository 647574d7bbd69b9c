// Which characters the bytes of a rich text mean.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

struct UConverter;

namespace tessavox::rtf {

/// A Windows code page by its number, or one of these two, whose bytes are signs and no letters.
using CodePage = std::int32_t;
constexpr CodePage symbol_font = -1; // the Greek letters and signs of the font Symbol
constexpr CodePage dingbat_font = -2; // any other font of signs
constexpr CodePage western = 1252; // stands in for every code page that isn't known

/// The code page of a font's character set (the N of \fcharsetN; the numbers are those of the
/// Windows fonts API). `otherwise` is for the sets that have none.
CodePage code_page_of_charset(std::int32_t charset, const std::string& family, CodePage otherwise);

/// Turns bytes into text. Bytes that mean nothing become U+FFFD.
class Decoder {
public:
    Decoder();
    ~Decoder();
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    std::u16string decode(std::string_view bytes, CodePage code_page);

private:
    struct Closer {
        void operator()(UConverter* converter) const;
    };
    UConverter& converter(CodePage code_page);
    std::map<std::string_view, std::unique_ptr<UConverter, Closer>> m_converters; // by their names
};

/// The character that a font of signs shows for a byte. Signs that aren't known get the place in
/// the private use area (U+F000 and the byte) that word processors give them.
char16_t sign_of(std::uint8_t byte, CodePage code_page);

} // namespace tessavox::rtf
