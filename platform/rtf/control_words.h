// The control words of rich text that mean something to a text pane.
//
// Meanings, defaults and units are those of Rich Text Format 1.9.1, as its maker published it;
// every word that isn't here is left out, as readers are asked to do there.
#pragma once

#include "platform/rtf/document.h"

#include <optional>
#include <string_view>
#include <variant>

namespace tessavox::rtf {

/// On without a number or with any but 0, off with 0.
struct Toggle {
    bool CharacterFormat::*field;
};
/// Takes the same field away again, with or without a number.
struct SwitchOff {
    bool CharacterFormat::*field;
};
struct SetCapitals {
    Capitals capitals;
};
struct SetScript {
    Script script;
};
/// A place in the colour table.
struct SetColor {
    std::int32_t CharacterFormat::*field;
};
/// A length in twips, above and below 0 within most_twips, or not below 0.
struct SetLength {
    std::int32_t ParagraphFormat::*field;
    bool can_be_negative;
};
struct Align {
    Alignment alignment;
};
/// A character that is written as a word.
struct Character {
    char16_t unit;
};

/// What the text of a group is for.
enum class Purpose : std::uint8_t {
    shown,
    skipped, // and so is everything inside it
    shell, // text of its own is skipped; groups inside may be shown
    alternatives, // a shell whose text stands inside once more, in Unicode
    font_table,
    color_table,
    marker, // the number or bullet of a list paragraph
};

/// The rest of the group is for this, unless the group is skipped already. `shown` changes nothing:
/// such a word only says that its group isn't one of those that are skipped for their star.
struct Open {
    Purpose purpose;
};

/// What needs more than a row to say.
enum class Act : std::uint8_t {
    // of the tables at the beginning
    ansi_code_page,
    charset_mac,
    charset_pc,
    charset_pca,
    default_font,
    font_charset,
    font_code_page,
    red,
    green,
    blue,
    // of characters
    font,
    size,
    raise,
    lower,
    script_proportion,
    exact_offset,
    hidden,
    deleted,
    plain,
    // of paragraphs
    paragraph_defaults,
    list_bullet,
    list_body,
    paragraph_end,
    break_paragraph,
    cell,
    row,
    // of groups
    unicode,
    unicode_skip,
    shape_text,
    unicode_alternative,
};
constexpr Act last_header_act = Act::blue;
constexpr Act last_character_act = Act::plain;
constexpr Act last_paragraph_act = Act::row;

/// A word of our own, which other readers leave out: the exact twips of an offset that the word
/// before it gives in half-points.
constexpr std::string_view exact_offset_word = "txoffset";

using Meaning = std::variant<Toggle, SwitchOff, SetCapitals, SetScript, SetColor, SetLength, Align,
    Character, Open, Act>;

/// Nothing if the word is unknown.
const Meaning* meaning_of(std::string_view word);

} // namespace tessavox::rtf
