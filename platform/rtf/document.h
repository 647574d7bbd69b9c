// A formatted text as a plain value: paragraphs of runs with formats. The reader makes one of rich
// text, the writer makes rich text of one; no toolkit is needed for either.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tessavox::rtf {

constexpr std::int32_t no_font = -1; // whatever font the pane gives to text that has none
constexpr std::int32_t automatic_color = -1; // the colour that text, or what lies behind it, has

enum class Script : std::uint8_t { normal, super, sub };
enum class Capitals : std::uint8_t { as_written, all, small };
enum class Alignment : std::uint8_t { left, center, right, justified };

struct CharacterFormat {
    std::int32_t font = no_font; // an index into Document::fonts
    std::int32_t half_points = 24;
    std::int32_t color = automatic_color; // otherwise 0xRRGGBB
    std::int32_t background = automatic_color;
    std::int32_t offset_twips = 0; // above 0: raised above the line, in its full size
    Script script = Script::normal; // small and raised, or small and lowered
    Capitals capitals = Capitals::as_written; // how letters are shown; the text keeps its own
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;

    friend bool operator==(const CharacterFormat&, const CharacterFormat&) = default;
};

/// Lengths are twips. The first line begins at left_indent + first_line_indent; a hanging indent is
/// a first_line_indent below 0.
struct ParagraphFormat {
    std::int32_t left_indent = 0;
    std::int32_t first_line_indent = 0;
    std::int32_t right_indent = 0;
    std::int32_t space_before = 0;
    std::int32_t space_after = 0;
    Alignment alignment = Alignment::left;
    bool bullet = false;

    friend bool operator==(const ParagraphFormat&, const ParagraphFormat&) = default;
};

struct Run {
    std::uint32_t length; // UTF-16 code units, at least 1
    std::uint32_t format; // an index into Document::character_formats
};

struct Paragraph {
    std::uint32_t runs; // how many; they cover the paragraph's text but for its LF
    std::uint32_t format; // an index into Document::paragraph_formats
    std::uint32_t mark; // the format of what would be typed into it were it empty
};

/// The runs of all paragraphs follow each other, as do the paragraphs. There is at least one
/// paragraph, and each list of formats has at least one entry.
struct Document {
    std::u16string text; // an LF between two paragraphs, U+2028 where a line ends inside of one
    std::vector<Run> runs;
    std::vector<Paragraph> paragraphs;
    std::vector<CharacterFormat> character_formats;
    std::vector<ParagraphFormat> paragraph_formats;
    std::vector<std::string> fonts; // family names
};

/// Whether the last paragraph ends with a paragraph mark of its own in rich text. Files are written
/// so, and the mark is dropped when they are read, so that an empty paragraph at the end survives;
/// a piece of a paragraph that is copied into another has none.
enum class LastParagraph { closed, open };

// What differs further gets the format that came first. No writer comes near to it, and a toolkit
// needs a kilobyte for each.
constexpr std::size_t most_formats = 65'536;
// Further fonts count as none: a toolkit compares each format with all others that differ in the
// font alone. Text in further runs takes the format of the run before it.
constexpr std::size_t most_fonts = 1000;
constexpr std::size_t most_runs = 1'000'000;

constexpr std::int32_t most_half_points = 3276; // 1638 points, as much as word processors offer
constexpr std::int32_t most_twips = 31'680; // 22 inches, the widest page of word processors

} // namespace tessavox::rtf
