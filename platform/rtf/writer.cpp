#include "platform/rtf/writer.h"

#include "platform/rtf/control_words.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <unordered_map>

namespace tessavox::rtf {
namespace {

constexpr std::int32_t twips_per_half_point = 10;

class Writer {
public:
    explicit Writer(const Document& document)
        : m_document(document)
    {
        m_out.reserve(document.text.size() + document.text.size() / 4 + document.runs.size() * 16);
    }

    std::string write(LastParagraph last_paragraph);

private:
    void write_header();
    void list_color(std::int32_t color);
    void write_font(std::size_t number, std::string_view kind, std::string_view family);

    void begin_paragraph(const Paragraph& paragraph);
    void change_format(std::uint32_t number);
    void change_face(const CharacterFormat& to);
    void change_place(const CharacterFormat& to);
    void write_text(std::u16string_view text);
    void write_unit(char16_t unit);

    void word(std::string_view word) { m_out.append("\\").append(word); }
    void word(std::string_view word, std::int64_t number);
    void word_if(bool needed, std::string_view name, std::int64_t number)
    {
        if (needed)
            word(name, number);
    }
    void word_if(bool needed, std::string_view name)
    {
        if (needed)
            word(name);
    }
    std::int64_t number_of_color(std::int32_t color) const
    {
        return color == automatic_color ? 0 : m_colors.at(color);
    }
    std::int64_t number_of_font(std::int32_t font) const
    {
        return font == no_font ? m_number_of_no_font : font;
    }

    const Document& m_document;
    std::string m_out;
    std::unordered_map<std::int32_t, std::int64_t> m_colors;
    std::int64_t m_number_of_no_font = 0; // one that the table of fonts hasn't
    std::size_t m_symbol_font = 0;
    CharacterFormat m_format; // what the reader has reached
    std::int64_t m_paragraph_format = -1;
};

void Writer::word(std::string_view word, std::int64_t number)
{
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    m_out.append("\\").append(word).append(digits.data(), end);
}

void Writer::write_font(std::size_t number, std::string_view kind, std::string_view family)
{
    m_out.append("{");
    word("f", static_cast<std::int64_t>(number));
    m_out.append(kind);
    for (const char16_t unit : to_utf16(family)) {
        if (unit == u';')
            m_out.append("\\'3b"); // as it stands it would end the name
        else
            write_unit(unit);
    }
    m_out.append(";}");
}

void Writer::list_color(std::int32_t color)
{
    const auto number = static_cast<std::int64_t>(m_colors.size()) + 1;
    if (color == automatic_color || !m_colors.emplace(color, number).second)
        return;
    word("red", color >> 16 & 0xFF);
    word("green", color >> 8 & 0xFF);
    word("blue", color & 0xFF);
    m_out.append(";");
}

void Writer::write_header()
{
    const auto& formats = m_document.character_formats;
    const std::size_t fonts = m_document.fonts.size();
    m_symbol_font = fonts;
    m_number_of_no_font = static_cast<std::int64_t>(fonts) + 1;
    const bool has_no_font = std::any_of(formats.begin(), formats.end(),
        [](const CharacterFormat& format) { return format.font == no_font; });
    m_out.append("{\\rtf1\\ansi\\ansicpg1252");
    word("deff", has_no_font ? m_number_of_no_font : 0);
    m_out.append("\\uc1\n{\\fonttbl");
    for (std::size_t i = 0; i < fonts; ++i)
        write_font(i, "\\fnil\\fcharset0 ", m_document.fonts[i]);
    write_font(m_symbol_font, "\\fnil\\fcharset2 ", "Symbol");
    m_out.append("}\n{\\colortbl;");
    for (const CharacterFormat& format : formats) {
        list_color(format.color);
        list_color(format.background);
    }
    m_out.append("}\n");
}

std::string Writer::write(LastParagraph last_paragraph)
{
    write_header();
    const std::u16string_view text = m_document.text;
    std::size_t at = 0;
    std::size_t run = 0;
    for (std::size_t i = 0; i < m_document.paragraphs.size(); ++i) {
        const Paragraph& paragraph = m_document.paragraphs[i];
        begin_paragraph(paragraph);
        for (const std::size_t end = run + paragraph.runs; run < end; ++run) {
            change_format(m_document.runs[run].format);
            write_text(text.substr(at, m_document.runs[run].length));
            at += m_document.runs[run].length;
        }
        change_format(paragraph.mark);
        ++at;
        const bool is_last = i + 1 == m_document.paragraphs.size();
        if (!is_last || last_paragraph == LastParagraph::closed)
            m_out.append("\\par\n");
    }
    m_out.append("}\n");
    return std::move(m_out);
}

void Writer::begin_paragraph(const Paragraph& paragraph)
{
    const ParagraphFormat& format = m_document.paragraph_formats[paragraph.format];
    const bool is_new = m_paragraph_format != paragraph.format;
    word_if(is_new, "pard");
    if (format.bullet) {
        m_out.append("{\\pntext");
        word("f", static_cast<std::int64_t>(m_symbol_font));
        m_out.append("\\'B7\\tab}");
    }
    if (!is_new)
        return;
    m_paragraph_format = paragraph.format;
    if (format.bullet) {
        m_out.append("{\\*\\pn\\pnlvlblt");
        word("pnf", static_cast<std::int64_t>(m_symbol_font));
        m_out.append("\\pnindent0{\\pntxtb\\'B7}}");
    }
    constexpr std::string_view alignments[] = { "ql", "qc", "qr", "qj" };
    word(alignments[static_cast<std::size_t>(format.alignment)]);
    word_if(format.first_line_indent != 0, "fi", format.first_line_indent);
    word_if(format.left_indent != 0, "li", format.left_indent);
    word_if(format.right_indent != 0, "ri", format.right_indent);
    word_if(format.space_before != 0, "sb", format.space_before);
    word_if(format.space_after != 0, "sa", format.space_after);
    m_out.append(" ");
}

void Writer::change_format(std::uint32_t number)
{
    const CharacterFormat& to = m_document.character_formats[number];
    if (to == m_format)
        return;
    word_if(to.font != m_format.font, "f", number_of_font(to.font));
    word_if(to.half_points != m_format.half_points, "fs", to.half_points);
    word_if(to.color != m_format.color, "cf", number_of_color(to.color));
    word_if(to.background != m_format.background, "highlight", number_of_color(to.background));
    change_face(to);
    change_place(to);
    m_out.append(" ");
    m_format = to;
}

void Writer::change_face(const CharacterFormat& to)
{
    word_if(to.bold != m_format.bold, to.bold ? "b" : "b0");
    word_if(to.italic != m_format.italic, to.italic ? "i" : "i0");
    word_if(to.underline != m_format.underline, to.underline ? "ul" : "ulnone");
    word_if(to.strike != m_format.strike, to.strike ? "strike" : "strike0");
    constexpr std::string_view capitals[] = { "caps0", "caps", "scaps" };
    word_if(to.capitals != m_format.capitals, capitals[static_cast<std::size_t>(to.capitals)]);
}

void Writer::change_place(const CharacterFormat& to)
{
    constexpr std::string_view scripts[] = { "nosupersub", "super", "sub" };
    word_if(to.script != m_format.script, scripts[static_cast<std::size_t>(to.script)]);
    if (to.offset_twips == m_format.offset_twips)
        return;
    const std::int32_t size = std::abs(to.offset_twips);
    const std::int32_t half_points = (size + twips_per_half_point / 2) / twips_per_half_point;
    word(to.offset_twips < 0 ? "dn" : "up", half_points);
    word_if(half_points * twips_per_half_point != size, exact_offset_word, to.offset_twips);
}

void Writer::write_text(std::u16string_view text)
{
    for (const char16_t unit : text)
        write_unit(unit);
}

void Writer::write_unit(char16_t unit)
{
    switch (unit) {
    case u'\t':
        m_out.append("\\tab ");
        return;
    case u'\\':
    case u'{':
    case u'}':
        m_out.push_back('\\');
        break;
    case 0x2028:
        m_out.append("\\line ");
        return;
    default:
        break;
    }
    if (unit >= u' ' && unit < 0x7F) {
        m_out.push_back(static_cast<char>(unit));
        return;
    }
    word("u", static_cast<std::int16_t>(unit));
    m_out.push_back('?'); // for readers that know no Unicode
}

} // namespace

std::string write_rich_text(const Document& document, LastParagraph last_paragraph)
{
    return Writer(document).write(last_paragraph);
}

} // namespace tessavox::rtf
