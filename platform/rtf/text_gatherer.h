// Where the text of a rich text's groups goes.
#pragma once

#include "platform/rtf/charset.h"
#include "platform/rtf/control_words.h"
#include "platform/rtf/document_builder.h"
#include "platform/rtf/tables.h"

#include <optional>
#include <string>
#include <string_view>

namespace tessavox::rtf {

/// What holds until the group ends.
struct Group {
    CharacterFormat character; // but for its font, which is found when text is written
    ParagraphFormat paragraph;
    std::optional<std::int32_t> font; // its number; nothing: the default font
    std::optional<std::uint32_t> format; // the builder's number of all that, once it is known
    std::int32_t replacements = 1; // how many characters after a \u are only for older readers
    Purpose purpose = Purpose::shown;
    bool is_hidden = false;
    bool is_deleted = false;

    bool is_visible() const { return purpose == Purpose::shown && !is_hidden && !is_deleted; }
    /// The format, to be changed.
    CharacterFormat& change()
    {
        format.reset();
        return character;
    }
};

/// Turns bytes into text, and brings it to the document, the table of fonts or the marker of the
/// paragraph, whatever its group is for. The group is always the innermost one.
class TextGatherer {
public:
    explicit TextGatherer(std::size_t expected_size)
        : m_builder(expected_size)
    {
    }

    FontTable& fonts() { return m_fonts; }
    ColorTable& colors() { return m_colors; }
    void set_code_page(CodePage code_page) { m_code_page = code_page; }
    void set_default_font(std::int32_t number) { m_default_font = number; }

    /// Text as it stands: no control character but the tab.
    void add_bytes(std::string_view bytes, Group& group);
    /// One byte, which may be anything and half a character.
    void add_byte(char byte) { m_bytes.push_back(byte); }
    /// The bytes are complete: no further ones belong to the same character.
    void flush(Group& group);
    void write(std::u16string_view text, Group& group);
    /// One unit of UTF-16. A font of signs may show something else for it.
    void write_unit(char16_t unit, Group& group);

    void end_paragraph(Group& group);
    /// The same, unless nothing is in the paragraph yet.
    void break_paragraph(Group& group);
    void end_row(Group& group);
    void end_font() { m_fonts.end(m_code_page); }
    /// A marker is complete, and its paragraph goes on.
    void end_marker(Group& group);

    Document finish(Group& group, LastParagraph last_paragraph);

private:
    void add_fonts(std::string_view bytes, Group& group);
    void put_paragraph_end(Group& group);
    const FontTable::Font* font_of(const Group& group) const;
    CodePage code_page_of(const Group& group) const;
    std::uint32_t format_of(Group& group);
    ParagraphFormat paragraph_format_of(const Group& group) const;

    DocumentBuilder m_builder;
    Decoder m_decoder;
    FontTable m_fonts;
    ColorTable m_colors;
    std::string m_bytes; // of text, gathered until it is sure that no further one belongs to them
    std::u16string m_marker;
    std::optional<std::int32_t> m_default_font;
    CodePage m_code_page = western;
    bool m_has_bullet = false; // the paragraph's marker has shown one
};

} // namespace tessavox::rtf
