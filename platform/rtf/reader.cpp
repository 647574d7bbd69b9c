#include "platform/rtf/reader.h"

#include "platform/failure.h"
#include "platform/rtf/text_gatherer.h"
#include "platform/rtf/tokenizer.h"
#include "platform/text_limits.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tessavox::rtf {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view beginning = "{\\rtf";
constexpr std::size_t deepest_group = 10'000; // real texts stay below a hundred
constexpr std::int32_t most_replacements = 16; // no character has more bytes in any code page
constexpr std::int32_t twips_per_half_point = 10;
constexpr std::int32_t default_raise = 6; // half-points, of \up and \dn without a number
constexpr std::int32_t default_half_points = 24;
constexpr std::int32_t full_proportion = 100 * 100; // hundredths of a per cent

std::string_view without_preamble(std::string_view bytes)
{
    if (bytes.starts_with(byte_order_mark))
        bytes.remove_prefix(byte_order_mark.size());
    bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
    return bytes;
}

class Reader {
public:
    explicit Reader(std::string_view bytes)
        : m_tokens(bytes)
        , m_text(bytes.size() / 2)
        , m_groups(1)
    {
    }

    Document read(LastParagraph last_paragraph)
    {
        do {
            take(m_tokens.next());
        } while (!m_is_at_end);
        return m_text.finish(group(), last_paragraph);
    }

    void operator()(Toggle toggle)
    {
        change().*toggle.field = !m_token.has_number || m_token.number;
    }
    void operator()(SwitchOff off) { change().*off.field = false; }
    void operator()(SetCapitals set)
    {
        change().capitals
            = m_token.has_number && m_token.number == 0 ? Capitals::as_written : set.capitals;
    }
    void operator()(SetScript set) { change().script = set.script; }
    void operator()(SetColor set) { change().*set.field = m_text.colors().at(m_token.number); }
    void operator()(SetLength set)
    {
        const std::int32_t lowest = set.can_be_negative ? -most_twips : 0;
        group().paragraph.*set.field = std::clamp(m_token.number, lowest, most_twips);
    }
    void operator()(Align align) { group().paragraph.alignment = align.alignment; }
    void operator()(Character character) { write(character.unit); }
    void operator()(Open open)
    {
        if (open.purpose != Purpose::shown)
            group().purpose = open.purpose;
    }
    void operator()(Act act);

private:
    Group& group() { return m_groups.back(); }
    Purpose purpose() { return group().purpose; }
    CharacterFormat& change() { return group().change(); }
    void write(char16_t unit) { m_text.write({ &unit, 1 }, group()); }

    void take(const Token& token);
    void open_group();
    void close_group();
    void take_bytes(std::string_view bytes);
    void take_word();
    void take_symbol();

    void act_on_header(Act act);
    void act_on_character(Act act);
    void act_on_paragraph(Act act);
    void act_on_group(Act act);
    void set_offset(std::int32_t half_points);
    void take_unicode();

    Tokenizer m_tokens;
    Token m_token; // the one that is being taken
    TextGatherer m_text;
    std::vector<Group> m_groups;
    std::size_t m_groups_too_deep = 0; // these only count
    std::int32_t m_to_skip = 0;
    bool m_is_starred = false; // the next word's group is skipped if the word is unknown
    bool m_script_comes = false; // instead of the offset that the next word gives
    bool m_is_at_end = false;
};

void Reader::take(const Token& token)
{
    m_token = token;
    if (token.kind == TokenKind::bytes)
        return take_bytes(token.text);
    const bool is_replacement = m_to_skip > 0 && token.text != "u";
    if (token.kind == TokenKind::hex && !is_replacement) {
        if (purpose() != Purpose::skipped)
            m_text.add_byte(static_cast<char>(token.byte));
        return;
    }
    m_text.flush(group());
    if (token.kind == TokenKind::open)
        return open_group();
    if (token.kind == TokenKind::close)
        return close_group();
    if (token.kind == TokenKind::end) {
        m_is_at_end = true;
    } else if (is_replacement) {
        --m_to_skip;
    } else if (token.kind == TokenKind::word) {
        take_word();
    } else if (token.kind == TokenKind::symbol) {
        take_symbol();
    }
}

void Reader::open_group()
{
    m_to_skip = 0;
    m_is_starred = false;
    if (m_groups.size() >= deepest_group)
        ++m_groups_too_deep;
    else
        m_groups.push_back(Group(group()));
}

void Reader::close_group()
{
    m_to_skip = 0;
    m_is_starred = false;
    if (m_groups_too_deep > 0) {
        --m_groups_too_deep;
        return;
    }
    if (m_groups.size() <= 2) {
        m_is_at_end = true; // with the last group's formats, which its last paragraph has
        return;
    }
    const Purpose closed = purpose();
    if (closed == Purpose::font_table)
        m_text.end_font();
    m_groups.pop_back();
    if (closed == Purpose::marker && purpose() != Purpose::marker)
        m_text.end_marker(group());
}

void Reader::take_bytes(std::string_view bytes)
{
    const auto replacements = std::min(bytes.size(), static_cast<std::size_t>(m_to_skip));
    bytes.remove_prefix(replacements);
    m_to_skip -= static_cast<std::int32_t>(replacements);
    m_text.add_bytes(bytes, group());
}

void Reader::take_word()
{
    const bool is_starred = std::exchange(m_is_starred, false);
    if (purpose() == Purpose::skipped)
        return;
    const Meaning* meaning = meaning_of(m_token.text);
    if (meaning)
        std::visit(*this, *meaning);
    else if (is_starred)
        group().purpose = Purpose::skipped;
}

void Reader::take_symbol()
{
    constexpr char16_t no_break_space = 0x00A0;
    constexpr char16_t soft_hyphen = 0x00AD;
    constexpr char16_t no_break_hyphen = 0x2011;
    m_is_starred = m_token.byte == '*';
    switch (m_token.byte) {
    case '{':
    case '}':
    case '\\':
        m_text.add_byte(static_cast<char>(m_token.byte));
        break;
    case '~':
        write(no_break_space);
        break;
    case '-':
        write(soft_hyphen);
        break;
    case '_':
        write(no_break_hyphen);
        break;
    case '\n':
    case '\r':
        m_text.end_paragraph(group());
        break;
    default:
        break;
    }
}

void Reader::operator()(Act act)
{
    if (act <= last_header_act)
        act_on_header(act);
    else if (act <= last_character_act)
        act_on_character(act);
    else if (act <= last_paragraph_act)
        act_on_paragraph(act);
    else
        act_on_group(act);
}

void Reader::act_on_header(Act act)
{
    constexpr CodePage code_page_of_mac = 10000;
    constexpr CodePage code_page_of_pc = 437;
    constexpr CodePage code_page_of_pca = 850;
    switch (act) {
    case Act::ansi_code_page:
        m_text.set_code_page(m_token.number > 0 ? m_token.number : western);
        break;
    case Act::charset_mac:
        m_text.set_code_page(code_page_of_mac);
        break;
    case Act::charset_pc:
        m_text.set_code_page(code_page_of_pc);
        break;
    case Act::charset_pca:
        m_text.set_code_page(code_page_of_pca);
        break;
    case Act::default_font:
        m_text.set_default_font(m_token.number);
        break;
    case Act::font_charset:
        m_text.fonts().set_charset(m_token.number);
        break;
    case Act::font_code_page:
        m_text.fonts().set_code_page(std::max(m_token.number, 0));
        break;
    case Act::red:
        m_text.colors().set_part(m_token.number, 16);
        break;
    case Act::green:
        m_text.colors().set_part(m_token.number, 8);
        break;
    case Act::blue:
        m_text.colors().set_part(m_token.number, 0);
        break;
    default:
        break;
    }
}

void Reader::act_on_character(Act act)
{
    CharacterFormat& character = change();
    const bool is_on = !m_token.has_number || m_token.number != 0;
    const std::int32_t raise = m_token.has_number ? m_token.number : default_raise;
    switch (act) {
    case Act::font:
        if (purpose() == Purpose::font_table)
            m_text.fonts().begin(m_token.number);
        else
            group().font = m_token.number;
        break;
    case Act::size:
        character.half_points
            = m_token.number > 0 ? std::min(m_token.number, most_half_points) : default_half_points;
        break;
    case Act::raise:
        set_offset(raise);
        break;
    case Act::lower:
        set_offset(-raise);
        break;
    case Act::script_proportion:
        // A word processor's own word: what is raised next is a smaller script.
        m_script_comes = m_token.number < full_proportion;
        break;
    case Act::exact_offset:
        // Whoever changed the offset since didn't know of this word.
        if (std::abs(character.offset_twips - m_token.number) < twips_per_half_point)
            character.offset_twips = m_token.number;
        break;
    case Act::hidden:
        group().is_hidden = is_on;
        break;
    case Act::deleted:
        group().is_deleted = is_on;
        break;
    case Act::plain:
        character = {};
        group().font.reset();
        group().is_hidden = group().is_deleted = false;
        break;
    default:
        break;
    }
}

void Reader::set_offset(std::int32_t half_points)
{
    const std::int32_t most = most_twips / twips_per_half_point;
    if (std::exchange(m_script_comes, false)) {
        change().script = half_points < 0 ? Script::sub : Script::super;
        return;
    }
    change().offset_twips = std::clamp(half_points, -most, most) * twips_per_half_point;
}

void Reader::act_on_paragraph(Act act)
{
    switch (act) {
    case Act::paragraph_defaults:
        group().paragraph = {};
        break;
    case Act::list_bullet:
    case Act::list_body: {
        // It stands in a group of its own within the paragraph that it speaks of.
        Group& paragraph = m_groups.size() > 1 ? m_groups[m_groups.size() - 2] : group();
        paragraph.paragraph.bullet = act == Act::list_bullet;
        break;
    }
    case Act::paragraph_end:
        m_text.end_paragraph(group());
        break;
    case Act::break_paragraph:
        m_text.break_paragraph(group());
        break;
    case Act::cell:
        write(u'\t');
        break;
    case Act::row:
        m_text.end_row(group());
        break;
    default:
        break;
    }
}

void Reader::act_on_group(Act act)
{
    switch (act) {
    case Act::unicode:
        take_unicode();
        break;
    case Act::unicode_skip:
        group().replacements = std::clamp(m_token.number, 0, most_replacements);
        break;
    case Act::shape_text:
        if (purpose() == Purpose::shell) {
            group().purpose = Purpose::shown;
            m_text.break_paragraph(group()); // a frame's text stands apart from that around it
        }
        break;
    case Act::unicode_alternative:
        if (purpose() == Purpose::alternatives && m_groups.size() > 2)
            group().purpose = m_groups[m_groups.size() - 3].purpose;
        break;
    default:
        break;
    }
}

void Reader::take_unicode()
{
    constexpr std::int32_t first_beyond_16_bits = 0x10000;
    constexpr std::int32_t last_character = 0x10FFFF;
    const std::int32_t number = m_token.number;
    m_to_skip = group().replacements;
    if (number >= first_beyond_16_bits && number <= last_character) {
        const std::int32_t rest = number - first_beyond_16_bits;
        const char16_t pair[] = { static_cast<char16_t>(0xD800 + (rest >> 10)),
            static_cast<char16_t>(0xDC00 + (rest & 0x3FF)) };
        return m_text.write({ pair, 2 }, group());
    }
    m_text.write_unit(static_cast<char16_t>(number & 0xFFFF), group());
}

} // namespace

bool is_rich_text(std::string_view bytes)
{
    return without_preamble(bytes).starts_with(beginning);
}

Document read_rich_text(std::string_view bytes, LastParagraph last_paragraph)
{
    if (bytes.size() > most_text_bytes)
        throw Failure("the text is larger than 64 MiB");
    if (!is_rich_text(bytes))
        throw Failure("the text is no rich text");
    return Reader(without_preamble(bytes)).read(last_paragraph);
}

} // namespace tessavox::rtf
