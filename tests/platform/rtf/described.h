// Documents as texts, so that they can be compared and looked at.
#pragma once

#include "platform/rtf/document.h"
#include "platform/text.h"

#include <cstdio>
#include <string>

namespace tessavox::rtf {

/// Those that aren't empty, with blanks between them.
inline std::string listed(std::initializer_list<std::string> items)
{
    std::string list;
    for (const std::string& item : items)
        list += (list.empty() || item.empty() ? "" : " ") + item;
    return list;
}

inline std::string number(const char* name, std::int32_t value, std::int32_t usual = 0)
{
    return value == usual ? "" : name + std::to_string(value);
}

inline std::string color(const char* name, std::int32_t value)
{
    char digits[16];
    std::snprintf(digits, sizeof digits, "%s#%06x", name, static_cast<unsigned>(value));
    return value == automatic_color ? "" : digits;
}

inline std::string described(const CharacterFormat& format, const std::vector<std::string>& fonts)
{
    const auto font = static_cast<std::size_t>(format.font);
    return "["
        + listed({ format.font == no_font ? "" : fonts.at(font),
            number("fs", format.half_points, 24), format.bold ? "b" : "", format.italic ? "i" : "",
            format.underline ? "ul" : "", format.strike ? "strike" : "", color("", format.color),
            color("on", format.background), format.script == Script::super ? "super" : "",
            format.script == Script::sub ? "sub" : "",
            format.capitals == Capitals::all ? "caps" : "",
            format.capitals == Capitals::small ? "scaps" : "", number("up", format.offset_twips) })
        + "]";
}

inline std::string described(const ParagraphFormat& format)
{
    const char* const alignments[] = { "", "center", "right", "justified" };
    const std::string list = listed({ format.bullet ? "bullet" : "",
        alignments[static_cast<std::size_t>(format.alignment)], number("li", format.left_indent),
        number("fi", format.first_line_indent), number("ri", format.right_indent),
        number("sb", format.space_before), number("sa", format.space_after) });
    return list.empty() ? "" : "(" + list + ")";
}

/// A line for each paragraph, its formats in brackets where they aren't the usual ones:
/// "[bullet li720] It [b, Arial] was[]." The format of a paragraph's end is told only if the last
/// run has another.
inline std::string described(const Document& document)
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

/// What a document says about itself that isn't true; empty if there is nothing.
inline std::string flaw_of(const Document& document)
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
