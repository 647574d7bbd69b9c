// The fonts and colours that a rich text lists at its beginning and then calls by number.
#pragma once

#include "platform/rtf/charset.h"
#include "platform/rtf/document.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessavox::rtf {

class FontTable {
public:
    struct Font {
        std::string family; // UTF-8; may be empty
        CodePage code_page = western;
    };

    /// The next entry begins; what was gathered for the one before goes into the table.
    void begin(std::int32_t number);
    void set_charset(std::int32_t charset) { m_charset = charset; }
    void set_code_page(CodePage code_page) { m_code_page = code_page; }
    /// A further piece of the name of the entry. Names are cut where no real one is as long.
    void add_to_name(std::u16string_view piece);
    /// How the bytes of the entry's name are to be read; `otherwise` if nothing was said about it.
    CodePage name_code_page(CodePage otherwise) const;
    /// The entry is complete; later ones with its number are ignored.
    void end(CodePage otherwise);

    /// Nothing if there is none.
    const Font* find(std::int32_t number) const;

private:
    static constexpr std::int32_t default_charset = 1;
    std::unordered_map<std::int32_t, Font> m_fonts;
    std::optional<std::int32_t> m_number;
    std::int32_t m_charset = default_charset;
    std::optional<CodePage> m_code_page;
    std::u16string m_name;
};

class ColorTable {
public:
    /// One part of the colour that is being written; `shift` is its place in 0xRRGGBB.
    void set_part(std::int32_t value, int shift);
    /// The colour is complete. One without parts is the automatic colour.
    void end();
    /// The automatic colour for a number that isn't in the table.
    std::int32_t at(std::int32_t number) const;

private:
    std::vector<std::int32_t> m_colors;
    std::int32_t m_color = automatic_color;
};

} // namespace tessavox::rtf
