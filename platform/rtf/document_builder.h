// Puts a document together from its beginning to its end.
#pragma once

#include "platform/rtf/document.h"

#include <string_view>
#include <unordered_map>

namespace tessavox::rtf {

/// Numbers equal formats once, and keeps the text such as a text pane can hold it.
class DocumentBuilder {
public:
    explicit DocumentBuilder(std::size_t expected_size);

    /// The number by which text gets this format.
    std::uint32_t format(const CharacterFormat& format);
    std::int32_t font(const std::string& family);

    /// What ends a paragraph (LF, U+2029; CRLF and CR as well) does so here too, with `paragraph`
    /// as its format. NUL, U+FDD0, U+FDD1, U+FFFC and lone surrogates become U+FFFD, a vertical tab
    /// U+2028; what else controls but the tab is left out. A surrogate pair may come in two pieces.
    /// @throws Failure when there are too many paragraphs, or one is too long.
    void add(std::u16string_view text, std::uint32_t format, const ParagraphFormat& paragraph);
    /// The same for printable ASCII.
    void add_ascii(std::string_view text, std::uint32_t format);
    /// `mark` is the format of the paragraph's end. @throws Failure as above.
    void end_paragraph(const ParagraphFormat& paragraph, std::uint32_t mark);

    /// Whether the paragraph that is being written has no text yet.
    bool is_at_paragraph_start() const { return m_paragraph_begin == m_document.text.size(); }
    bool ends_with(char16_t unit) const;
    /// Takes back the last unit of the paragraph that is being written.
    void drop_last_unit();

    /// Ends the last paragraph, unless it is `closed` and has no text: then it was only the place
    /// after the last paragraph's mark.
    Document finish(
        const ParagraphFormat& paragraph, std::uint32_t mark, LastParagraph last_paragraph);

private:
    void put(char16_t unit, std::uint32_t format, const ParagraphFormat& paragraph);
    void grow_run(std::size_t length, std::uint32_t format);
    void flush_half_character(std::uint32_t format);

    struct Hash {
        std::size_t operator()(const CharacterFormat& format) const;
        std::size_t operator()(const ParagraphFormat& format) const;
    };

    Document m_document;
    std::unordered_map<CharacterFormat, std::uint32_t, Hash> m_character_numbers;
    std::unordered_map<ParagraphFormat, std::uint32_t, Hash> m_paragraph_numbers;
    std::unordered_map<std::string, std::int32_t> m_font_numbers;
    ParagraphFormat m_last_paragraph_format;
    std::uint32_t m_last_paragraph_number = 0;
    std::size_t m_paragraph_begin = 0;
    std::size_t m_first_run = 0;
    char16_t m_high_surrogate = 0;
    bool m_after_carriage_return = false;
};

} // namespace tessavox::rtf
