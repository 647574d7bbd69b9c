#include "tests/platform/rtf/described.h"

#include "platform/text.h"

#include <cstdio>

namespace tessavox::rtf {
namespace {

void add(std::string& list, bool holds, const std::string& item)
{
    if (holds)
        list += (list.empty() ? "" : " ") + item;
}

std::string number(const char* name, std::int32_t value)
{
    return name + std::to_string(value);
}

std::string color(const char* name, std::int32_t value)
{
    char digits[16];
    std::snprintf(digits, sizeof digits, "%s#%06x", name, static_cast<unsigned>(value));
    return digits;
}

std::string described(const CharacterFormat& format, const std::vector<std::string>& fonts)
{
    std::string list;
    if (format.font != no_font)
        add(list, true, fonts.at(static_cast<std::size_t>(format.font)));
    add(list, format.half_points != 24, number("fs", format.half_points));
    add(list, format.bold, "b");
    add(list, format.italic, "i");
    add(list, format.underline, "ul");
    add(list, format.strike, "strike");
    add(list, format.color != automatic_color, color("", format.color));
    add(list, format.background != automatic_color, color("on", format.background));
    add(list, format.script == Script::super, "super");
    add(list, format.script == Script::sub, "sub");
    add(list, format.capitals == Capitals::all, "caps");
    add(list, format.capitals == Capitals::small, "scaps");
    add(list, format.offset_twips != 0, number("up", format.offset_twips));
    return "[" + list + "]";
}

std::string described(const ParagraphFormat& format)
{
    const char* const alignments[] = { "", "center", "right", "justified" };
    std::string list;
    add(list, format.bullet, "bullet");
    add(list, format.alignment != Alignment::left,
        alignments[static_cast<std::size_t>(format.alignment)]);
    add(list, format.left_indent != 0, number("li", format.left_indent));
    add(list, format.first_line_indent != 0, number("fi", format.first_line_indent));
    add(list, format.right_indent != 0, number("ri", format.right_indent));
    add(list, format.space_before != 0, number("sb", format.space_before));
    add(list, format.space_after != 0, number("sa", format.space_after));
    return list.empty() ? "" : "(" + list + ")";
}

} // namespace

std::string described(const Document& document)
{
    std::string out;
    std::string before = "[]";
    const auto change = [&](std::uint32_t format) {
        const std::string now = described(document.character_formats[format], document.fonts);
        out += now == before ? "" : now;
        before = now;
    };
    const std::u16string_view text = document.text;
    std::size_t at = 0;
    auto run = document.runs.begin();
    for (const Paragraph& paragraph : document.paragraphs) {
        out += described(document.paragraph_formats[paragraph.format]);
        for (const auto end = run + paragraph.runs; run != end; ++run) {
            change(run->format);
            out += to_utf8(text.substr(at, run->length));
            at += run->length;
        }
        change(paragraph.mark);
        out += "\n";
        ++at;
    }
    return out;
}

std::string flaw_of(const Document& document)
{
    if (document.paragraphs.empty())
        return "it has no paragraph";
    std::size_t at = 0;
    std::size_t run = 0;
    for (const Paragraph& paragraph : document.paragraphs) {
        if (paragraph.format >= document.paragraph_formats.size()
            || paragraph.mark >= document.character_formats.size())
            return "a paragraph's format doesn't exist";
        if (at > 0 && (at > document.text.size() || document.text[at - 1] != u'\n'))
            return "a paragraph doesn't begin after an LF";
        const std::size_t end = run + paragraph.runs;
        if (end > document.runs.size())
            return "a run doesn't exist";
        for (; run < end; ++run) {
            if (document.runs[run].length == 0)
                return "a run is empty";
            if (document.runs[run].format >= document.character_formats.size())
                return "a run's format doesn't exist";
            at += document.runs[run].length;
        }
        ++at;
    }
    if (run != document.runs.size() || at != document.text.size() + 1)
        return "the runs don't cover the text";
    for (const CharacterFormat& format : document.character_formats) {
        if (format.font >= static_cast<std::int32_t>(document.fonts.size())
            || format.font < no_font)
            return "a font doesn't exist";
    }
    if (to_utf16(to_utf8(document.text)) != document.text)
        return "the text has half a character";
    for (const char16_t unit : document.text) {
        if (unit == 0 || unit == u'\r' || unit == 0x2029 || unit == 0xFFFC)
            return "the text has what no pane can hold";
    }
    return "";
}

} // namespace tessavox::rtf
