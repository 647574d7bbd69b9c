#include "platform/rtf/document_builder.h"

#include "platform/failure.h"
#include "platform/text_limits.h"

#include <algorithm>
#include <functional>

namespace tessavox::rtf {
namespace {

constexpr char16_t replacement = 0xFFFD;
constexpr char16_t line_separator = 0x2028;
constexpr char16_t paragraph_separator = 0x2029;

bool is_high_surrogate(char16_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool is_low_surrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

std::size_t mix(std::size_t hash, std::int32_t value)
{
    constexpr std::size_t golden_ratio = 0x9E3779B97F4A7C15;
    return (hash ^ static_cast<std::uint32_t>(value)) * golden_ratio + (hash >> 29);
}

/// The number of a value in `values`, where it is put if it is new and there are less than `most`.
template <class Value, class Numbers>
typename Numbers::mapped_type number_of(const Value& value, Numbers& numbers,
    std::vector<Value>& values, std::size_t most, typename Numbers::mapped_type otherwise)
{
    const auto known = numbers.find(value);
    if (known != numbers.end())
        return known->second;
    if (values.size() >= most)
        return otherwise;
    const auto number = static_cast<typename Numbers::mapped_type>(values.size());
    values.push_back(value);
    numbers.emplace(value, number);
    return number;
}

} // namespace

std::size_t DocumentBuilder::Hash::operator()(const CharacterFormat& format) const
{
    std::size_t hash = mix(0, format.font);
    hash = mix(hash, format.half_points);
    hash = mix(hash, format.color);
    hash = mix(hash, format.background);
    hash = mix(hash, format.offset_twips);
    return mix(hash,
        static_cast<int>(format.script) << 8 | static_cast<int>(format.capitals) << 4
            | format.bold << 3 | format.italic << 2 | format.underline << 1 | format.strike << 0);
}

std::size_t DocumentBuilder::Hash::operator()(const ParagraphFormat& format) const
{
    std::size_t hash = mix(0, format.left_indent);
    hash = mix(hash, format.first_line_indent);
    hash = mix(hash, format.right_indent);
    hash = mix(hash, format.space_before);
    hash = mix(hash, format.space_after);
    return mix(hash, static_cast<int>(format.alignment) << 1 | format.bullet);
}

DocumentBuilder::DocumentBuilder(std::size_t expected_size)
{
    m_document.text.reserve(expected_size);
    m_last_paragraph_number = number_of({}, m_paragraph_numbers, m_document.paragraph_formats,
        most_formats, 0); // so that there is one
}

std::uint32_t DocumentBuilder::format(const CharacterFormat& format)
{
    return number_of(format, m_character_numbers, m_document.character_formats, most_formats, 0);
}

std::int32_t DocumentBuilder::font(const std::string& family)
{
    return number_of(family, m_font_numbers, m_document.fonts, most_fonts, no_font);
}

void DocumentBuilder::grow_run(std::size_t length, std::uint32_t format)
{
    auto& runs = m_document.runs;
    const bool is_first = runs.size() == m_first_run;
    if (is_first || (runs.back().format != format && runs.size() < most_runs))
        runs.push_back({ 0, format });
    runs.back().length += static_cast<std::uint32_t>(length);
}

void DocumentBuilder::flush_half_character(std::uint32_t format)
{
    if (m_high_surrogate == 0)
        return;
    m_high_surrogate = 0;
    m_document.text.push_back(replacement);
    grow_run(1, format);
}

void DocumentBuilder::put(char16_t unit, std::uint32_t format, const ParagraphFormat& paragraph)
{
    const bool ends_line_already = unit == u'\n' && m_after_carriage_return;
    m_after_carriage_return = unit == u'\r';
    if (ends_line_already)
        return;
    if (is_low_surrogate(unit) && m_high_surrogate != 0) {
        m_document.text.push_back(m_high_surrogate);
        m_document.text.push_back(unit);
        m_high_surrogate = 0;
        return grow_run(2, format);
    }
    flush_half_character(format);
    if (is_high_surrogate(unit)) {
        m_high_surrogate = unit;
        return;
    }
    if (unit == u'\n' || unit == u'\r' || unit == paragraph_separator)
        return end_paragraph(paragraph, format);
    if (unit == u'\v')
        unit = line_separator;
    else if (unit == 0 || unit == 0xFDD0 || unit == 0xFDD1 || unit == 0xFFFC
        || is_low_surrogate(unit))
        unit = replacement;
    else if (unit < u' ' && unit != u'\t')
        return;
    m_document.text.push_back(unit);
    grow_run(1, format);
}

void DocumentBuilder::add(
    std::u16string_view text, std::uint32_t format, const ParagraphFormat& paragraph)
{
    for (const char16_t unit : text)
        put(unit, format, paragraph);
}

void DocumentBuilder::add_ascii(std::string_view text, std::uint32_t format)
{
    flush_half_character(format);
    m_after_carriage_return = false;
    m_document.text.append(text.begin(), text.end());
    grow_run(text.size(), format);
}

void DocumentBuilder::end_paragraph(const ParagraphFormat& paragraph, std::uint32_t mark)
{
    flush_half_character(mark);
    auto& document = m_document;
    if (document.paragraphs.size() >= most_text_paragraphs)
        throw Failure("the text has more than a million paragraphs");
    if (!(paragraph == m_last_paragraph_format)) {
        m_last_paragraph_format = paragraph;
        m_last_paragraph_number = number_of(
            paragraph, m_paragraph_numbers, document.paragraph_formats, most_formats, 0);
    }
    const auto runs = static_cast<std::uint32_t>(document.runs.size() - m_first_run);
    document.paragraphs.push_back({ runs, m_last_paragraph_number, mark });
    if (document.text.size() - m_paragraph_begin > most_paragraph_units)
        throw Failure("a paragraph of the text is too long");
    document.text.push_back(u'\n');
    m_paragraph_begin = document.text.size();
    m_first_run = document.runs.size();
}

bool DocumentBuilder::ends_with(char16_t unit) const
{
    return !is_at_paragraph_start() && m_document.text.back() == unit;
}

void DocumentBuilder::drop_last_unit()
{
    m_document.text.pop_back();
    if (--m_document.runs.back().length == 0)
        m_document.runs.pop_back();
}

Document DocumentBuilder::finish(
    const ParagraphFormat& paragraph, std::uint32_t mark, LastParagraph last_paragraph)
{
    flush_half_character(mark);
    const bool is_only_the_place_after
        = last_paragraph == LastParagraph::closed && is_at_paragraph_start();
    if (!is_only_the_place_after || m_document.paragraphs.empty())
        end_paragraph(paragraph, mark);
    m_document.text.pop_back(); // the LF that nothing follows
    if (m_document.character_formats.empty())
        m_document.character_formats.emplace_back();
    return std::move(m_document);
}

} // namespace tessavox::rtf
