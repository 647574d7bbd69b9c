#include "platform/rtf/tables.h"

#include "platform/text.h"

#include <algorithm>

namespace tessavox::rtf {
namespace {

constexpr std::size_t longest_name = 128;
constexpr std::size_t most_entries = 65'536; // their numbers have 16 bits
constexpr std::size_t most_colors = 2 * most_formats + 1; // two to a format, and the automatic one

/// A word processor lists a font once for each of its scripts, under names of its own making.
constexpr std::string_view script_suffixes[] = { " CE", " Cyr", " Greek", " Tur", " Baltic",
    " (Hebrew)", " (Arabic)", " (Vietnamese)", " (Thai)" };

void cut_script_suffix(std::string& family)
{
    for (const std::string_view suffix : script_suffixes) {
        if (family.size() > suffix.size() && family.ends_with(suffix))
            return family.resize(family.size() - suffix.size());
    }
}

} // namespace

void FontTable::begin(std::int32_t number)
{
    m_number = number;
    m_charset = default_charset;
    m_code_page.reset();
    m_name.clear();
}

void FontTable::add_to_name(std::u16string_view piece)
{
    m_name.append(piece.substr(0, longest_name - std::min(longest_name, m_name.size())));
}

CodePage FontTable::name_code_page(CodePage otherwise) const
{
    const CodePage code_page
        = m_code_page ? *m_code_page : code_page_of_charset(m_charset, "", otherwise);
    return code_page < 0 ? western : code_page; // a font of signs has its name in letters
}

void FontTable::end(CodePage otherwise)
{
    if (!m_number || m_fonts.size() >= most_entries)
        return;
    Font font{ to_utf8(m_name), western };
    const auto is_blank = [](char byte) { return byte == ' '; };
    font.family.erase(
        font.family.begin(), std::find_if_not(font.family.begin(), font.family.end(), is_blank));
    font.code_page
        = m_code_page ? *m_code_page : code_page_of_charset(m_charset, font.family, otherwise);
    if (font.code_page != western)
        cut_script_suffix(font.family);
    m_fonts.try_emplace(*m_number, std::move(font));
    m_number.reset();
    m_name.clear();
}

const FontTable::Font* FontTable::find(std::int32_t number) const
{
    const auto font = m_fonts.find(number);
    return font == m_fonts.end() ? nullptr : &font->second;
}

void ColorTable::set_part(std::int32_t value, int shift)
{
    const std::int32_t others = std::max(m_color, 0) & ~(0xFF << shift);
    m_color = others | std::clamp(value, 0, 0xFF) << shift;
}

void ColorTable::end()
{
    if (m_colors.size() < most_colors)
        m_colors.push_back(m_color);
    m_color = automatic_color;
}

std::int32_t ColorTable::at(std::int32_t number) const
{
    const auto place = static_cast<std::size_t>(number);
    return number >= 0 && place < m_colors.size() ? m_colors[place] : automatic_color;
}

} // namespace tessavox::rtf
