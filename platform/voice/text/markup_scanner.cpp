#include "platform/voice/text/markup_scanner.h"

#include "platform/text.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace tessavox::voice {

namespace {

constexpr std::size_t npos = std::u16string_view::npos;
constexpr std::size_t longest_entity = 32; // code units between '&' and ';'

bool is_blank(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

bool begins_name(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || c == u':'
        || (c >= 0xC0 && c < 0xD800 && c != 0xD7 && c != 0xF7 && !(c >= 0x2000 && c < 0x3005));
}

bool continues_name(char16_t c)
{
    return begins_name(c) || (c >= u'0' && c <= u'9') || c == u'-' || c == u'.' || c == 0xB7;
}

struct EntityRow {
    std::u16string_view name;
    char32_t character;
};

constexpr EntityRow named_entities[] = {
    { u"amp", U'&' },
    { u"lt", U'<' },
    { u"gt", U'>' },
    { u"quot", U'"' },
    { u"apos", U'\'' },
};

std::optional<char32_t> numeric_character(std::u16string_view digits, int base)
{
    const std::string text = to_utf8(digits);
    std::uint32_t point = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), point, base);
    const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
    const bool good = error == std::errc() && end == text.data() + text.size() && point != 0
        && point <= 0x10FFFF && !surrogate;
    return good ? std::optional<char32_t>(point) : std::nullopt;
}

struct Entity {
    char32_t character;
    std::size_t length; // with its '&' and ';'
};

/// The entity that `text` begins with.
std::optional<Entity> entity_at(std::u16string_view text)
{
    const std::u16string_view rest = text.substr(1, longest_entity);
    const std::size_t end = rest.find_first_of(u";&< ");
    if (end == npos || rest[end] != u';')
        return std::nullopt;
    const std::u16string_view name = rest.substr(0, end);
    std::optional<char32_t> character;
    if (name.starts_with(u"#x") || name.starts_with(u"#X"))
        character = numeric_character(name.substr(2), 16);
    else if (name.starts_with(u"#"))
        character = numeric_character(name.substr(1), 10);
    else if (const auto* row = std::ranges::find(named_entities, name, &EntityRow::name);
             row != std::end(named_entities))
        character = row->character;
    return character ? std::optional(Entity{ *character, end + 2 }) : std::nullopt;
}

} // namespace

MarkupScanner::MarkupScanner(std::u16string_view text)
    : m_text(text)
{
}

std::size_t MarkupScanner::EndSearch::find(
    std::u16string_view text, std::size_t from, std::size_t limit)
{
    const bool passed = m_found != npos && m_found < from;
    if (from < m_from || from > m_searched_to || passed) {
        m_from = m_searched_to = from;
        m_found = npos;
    }
    if (m_found == npos && m_searched_to < limit) {
        const std::size_t found = text.substr(0, std::min(limit + m_mark.size() - 1, text.size()))
                                      .find(m_mark, m_searched_to);
        m_found = found;
        m_searched_to = found == npos ? limit : found;
    }
    return m_found != npos && m_found < limit ? m_found : npos;
}

Markup MarkupScanner::scan(std::size_t at)
{
    if (m_text[at] == u'&')
        return scan_entity(at);
    if (at + 1 >= m_text.size())
        return {};
    switch (m_text[at + 1]) {
    case u'/':
        return scan_end_tag(at);
    case u'!':
        return scan_declaration(at);
    case u'?':
        return skipped_to(m_instruction_end, at, at + 2);
    default:
        return scan_tag(at);
    }
}

std::size_t MarkupScanner::limit_from(std::size_t at) const
{
    return std::min(m_text.size(), at + longest_markup);
}

std::size_t MarkupScanner::past_blanks(std::size_t at, std::size_t limit) const
{
    while (at < limit && is_blank(m_text[at]))
        ++at;
    return at;
}

/// The place after the name at `at`, or `at` itself if none begins there.
std::size_t MarkupScanner::past_name(std::size_t at, std::size_t limit) const
{
    if (at >= limit || !begins_name(m_text[at]))
        return at;
    while (at < limit && continues_name(m_text[at]))
        ++at;
    return at;
}

Markup MarkupScanner::scan_tag(std::size_t at)
{
    m_attributes.clear();
    const std::size_t limit = limit_from(at);
    const std::size_t name_end = past_name(at + 1, limit);
    if (name_end == at + 1)
        return {};
    Markup tag{ .kind = Markup::Kind::start_tag, .name = m_text.substr(at + 1, name_end - at - 1) };
    for (std::size_t place = name_end;;) {
        const std::size_t next = past_blanks(place, limit);
        if (next >= limit)
            return {};
        if (m_text[next] == u'>') {
            tag.end = next + 1;
            return tag;
        }
        if (m_text[next] == u'/') {
            const std::size_t close = past_blanks(next + 1, limit);
            if (close >= limit || m_text[close] != u'>')
                return {};
            tag.kind = Markup::Kind::empty_tag;
            tag.end = close + 1;
            return tag;
        }
        if (next == place)
            return {};
        place = read_attribute(next, limit);
        if (place == npos)
            return {};
    }
}

/// The place after the attribute at `at`, which is added to the list, or npos.
std::size_t MarkupScanner::read_attribute(std::size_t at, std::size_t limit)
{
    const std::size_t name_end = past_name(at, limit);
    if (name_end == at)
        return npos;
    const std::size_t equals = past_blanks(name_end, limit);
    if (equals >= limit || m_text[equals] != u'=')
        return npos;
    const std::size_t open = past_blanks(equals + 1, limit);
    if (open >= limit || (m_text[open] != u'"' && m_text[open] != u'\''))
        return npos;
    const std::size_t close = m_text.substr(0, limit).find(m_text[open], open + 1);
    if (close == npos)
        return npos;
    m_attributes.push_back(
        { m_text.substr(at, name_end - at), m_text.substr(open + 1, close - open - 1) });
    return close + 1;
}

Markup MarkupScanner::scan_end_tag(std::size_t at)
{
    const std::size_t limit = limit_from(at);
    const std::size_t name_end = past_name(at + 2, limit);
    const std::size_t close = past_blanks(name_end, limit);
    if (name_end == at + 2 || close >= limit || m_text[close] != u'>')
        return {};
    return { .kind = Markup::Kind::end_tag,
        .end = close + 1,
        .name = m_text.substr(at + 2, name_end - at - 2) };
}

Markup MarkupScanner::skipped_to(EndSearch& search, std::size_t at, std::size_t from)
{
    const std::size_t found = search.find(m_text, from, limit_from(at));
    if (found == npos)
        return {};
    return { .kind = Markup::Kind::skipped, .end = m_text.find(u'>', found) + 1 };
}

Markup MarkupScanner::scan_declaration(std::size_t at)
{
    const std::u16string_view rest = m_text.substr(at);
    if (rest.starts_with(u"<!--"))
        return skipped_to(m_comment_end, at, at + 4);
    if (rest.starts_with(u"<![CDATA[")) {
        const std::size_t content = at + 9;
        const std::size_t found = m_cdata_end.find(m_text, content, limit_from(at));
        if (found == npos)
            return {};
        return { .kind = Markup::Kind::cdata, .end = content, .content_end = found };
    }
    if (!rest.starts_with(u"<!DOCTYPE"))
        return {};
    const Markup whole = skipped_to(m_doctype_end, at, at + 9);
    if (whole.kind == Markup::Kind::none)
        return whole;
    // Declarations inside square brackets have closing signs of their own.
    if (m_subset_begin.find(m_text, at, whole.end) == npos)
        return whole;
    const std::size_t subset = m_subset_end.find(m_text, at, limit_from(at));
    if (subset == npos)
        return {};
    const std::size_t close = past_blanks(subset + 1, std::min(m_text.size(), subset + 4));
    if (close >= m_text.size() || m_text[close] != u'>')
        return {};
    return { .kind = Markup::Kind::skipped, .end = close + 1 };
}

Markup MarkupScanner::scan_entity(std::size_t at) const
{
    const std::optional<Entity> entity = entity_at(m_text.substr(at));
    if (!entity)
        return {};
    return {
        .kind = Markup::Kind::character, .end = at + entity->length, .character = entity->character
    };
}

std::u16string decoded_value(std::u16string_view value)
{
    std::u16string decoded;
    while (!value.empty()) {
        const auto entity = value.front() == u'&' ? entity_at(value) : std::nullopt;
        append_character(decoded, entity ? entity->character : value.front());
        value.remove_prefix(entity ? entity->length : 1);
    }
    return decoded;
}

} // namespace tessavox::voice
