#include "platform/rtf/text_gatherer.h"

#include "platform/rtf/list_marker.h"

#include <algorithm>

namespace tessavox::rtf {

void TextGatherer::add_bytes(std::string_view bytes, Group& group)
{
    if (group.purpose == Purpose::font_table)
        return add_fonts(bytes, group);
    if (group.purpose == Purpose::color_table) {
        for (auto ends = std::count(bytes.begin(), bytes.end(), ';'); ends > 0; --ends)
            m_colors.end();
        return;
    }
    if (bytes.empty() || (group.purpose != Purpose::marker && !group.is_visible()))
        return;
    const auto is_ascii = [](char byte) { return static_cast<signed char>(byte) >= 0; };
    const bool means_itself = m_bytes.empty() && group.purpose == Purpose::shown
        && code_page_of(group) > 0 && std::all_of(bytes.begin(), bytes.end(), is_ascii);
    if (means_itself)
        m_builder.add_ascii(bytes, format_of(group));
    else
        m_bytes.append(bytes);
}

void TextGatherer::add_fonts(std::string_view bytes, Group& group)
{
    for (;;) {
        const std::size_t end = bytes.find(';');
        m_bytes.append(bytes.substr(0, end));
        if (end == std::string_view::npos)
            return;
        flush(group);
        end_font();
        bytes.remove_prefix(end + 1);
    }
}

void TextGatherer::flush(Group& group)
{
    if (m_bytes.empty())
        return;
    const CodePage code_page = group.purpose == Purpose::font_table
        ? m_fonts.name_code_page(m_code_page)
        : code_page_of(group);
    write(m_decoder.decode(m_bytes, code_page), group);
    m_bytes.clear();
}

void TextGatherer::write(std::u16string_view text, Group& group)
{
    constexpr std::size_t longest_marker = 32;
    if (group.purpose == Purpose::font_table)
        m_fonts.add_to_name(text);
    else if (group.purpose == Purpose::marker && m_marker.size() < longest_marker)
        m_marker.append(text.substr(0, longest_marker));
    else if (group.is_visible())
        m_builder.add(text, format_of(group), paragraph_format_of(group));
}

void TextGatherer::write_unit(char16_t unit, Group& group)
{
    constexpr char16_t first_sign = 0xF021; // where word processors keep the bytes of such fonts
    constexpr char16_t last_sign = 0xF0FF;
    const CodePage code_page = code_page_of(group);
    if (code_page < 0 && unit >= first_sign && unit <= last_sign)
        unit = sign_of(static_cast<std::uint8_t>(unit & 0xFF), code_page);
    write({ &unit, 1 }, group);
}

void TextGatherer::put_paragraph_end(Group& group)
{
    m_builder.end_paragraph(paragraph_format_of(group), format_of(group));
    m_has_bullet = false;
}

void TextGatherer::end_paragraph(Group& group)
{
    if (group.is_visible())
        put_paragraph_end(group);
}

void TextGatherer::break_paragraph(Group& group)
{
    if (!m_builder.is_at_paragraph_start())
        end_paragraph(group);
}

void TextGatherer::end_row(Group& group)
{
    const bool is_row_of_inner_table = group.purpose == Purpose::shell;
    if ((!group.is_visible() && !is_row_of_inner_table) || m_builder.is_at_paragraph_start())
        return;
    if (m_builder.ends_with(u'\t'))
        m_builder.drop_last_unit(); // that of the last cell's end
    put_paragraph_end(group);
}

void TextGatherer::end_marker(Group& group)
{
    const std::u16string_view marker = without_blanks(m_marker);
    if (is_bullet(marker))
        m_has_bullet = true;
    else if (!marker.empty() && !group.paragraph.bullet)
        write(std::u16string(marker) + u'\t', group);
    m_marker.clear();
}

Document TextGatherer::finish(Group& group, LastParagraph last_paragraph)
{
    return m_builder.finish(paragraph_format_of(group), format_of(group), last_paragraph);
}

const FontTable::Font* TextGatherer::font_of(const Group& group) const
{
    const auto number = group.font ? group.font : m_default_font;
    return number ? m_fonts.find(*number) : nullptr;
}

CodePage TextGatherer::code_page_of(const Group& group) const
{
    const FontTable::Font* font = font_of(group);
    return font ? font->code_page : m_code_page;
}

std::uint32_t TextGatherer::format_of(Group& group)
{
    if (!group.format) {
        const FontTable::Font* font = font_of(group);
        group.character.font
            = font && !font->family.empty() ? m_builder.font(font->family) : no_font;
        group.format = m_builder.format(group.character);
    }
    return *group.format;
}

ParagraphFormat TextGatherer::paragraph_format_of(const Group& group) const
{
    ParagraphFormat format = group.paragraph;
    format.bullet = format.bullet || m_has_bullet;
    return format;
}

} // namespace tessavox::rtf
