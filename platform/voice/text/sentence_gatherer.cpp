#include "platform/voice/text/sentence_gatherer.h"

#include "platform/voice/text/reading_character.h"

#include <algorithm>
#include <unicode/uchar.h>

namespace tessavox::voice {

namespace {

// A text without any full stop is still read in pieces, so that its first word is not late.
constexpr std::size_t longest_sentence = 3000; // decoded code units
constexpr std::uint32_t longest_sentence_source = 1 << 16; // markup included
constexpr std::size_t farthest_cut = 400; // a longer word is cut itself
constexpr std::uint32_t longest_kept_blanks = 8; // longer white space becomes one blank
constexpr char16_t replacement = 0xFFFD;

// Abbreviations in lower case, without their last full stop. After these a sentence goes on,
constexpr std::u16string_view never_last
    = u" mr mrs ms dr prof st mt gen col capt lt sgt rev hon gov sen messrs mme mlle hr fr"
      u" e.g i.e vs cf viz ca approx z.b d.h u.a bzw bspw ggf evtl inkl vgl ";
// after these it does if a number follows ("No. 5"),
constexpr std::u16string_view not_before_number
    = u" no nos nr fig figs vol p pp ch sec art abs eq ed jan feb mar apr jun jul aug sep"
      u" sept oct nov dec ";
// and after these it ends before a capital letter only.
constexpr std::u16string_view last_before_capital = u" etc inc ltd co corp jr sr al usw ";

constexpr std::size_t longest_abbreviation = 8;

bool is_lower(char16_t c)
{
    return u_islower(c) != 0;
}

bool is_digit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

bool is_letter(char16_t c)
{
    return u_isalpha(c) != 0;
}

bool is_among(std::u16string_view words, std::u16string_view word)
{
    return words.find(u' ' + std::u16string(word) + u' ') != words.npos;
}

/// The word that ends `text`: back to white space or an opening sign.
std::u16string_view last_word(std::u16string_view text)
{
    std::size_t begin = text.size();
    while (begin > 0 && text.size() - begin <= longest_abbreviation
        && (is_wordish(text[begin - 1]) || text[begin - 1] == u'.'))
        --begin;
    return text.substr(begin);
}

/// Letters that each have a full stop of their own: "U.S", "a.m".
bool is_dotted(std::u16string_view word)
{
    if (word.size() < 3)
        return false;
    for (std::size_t at = 0; at < word.size(); ++at) {
        if (at % 2 == 0 ? !is_letter(word[at]) : word[at] != u'.')
            return false;
    }
    return word.size() % 2 == 1;
}

bool full_stop_ends(std::u16string_view before, char16_t next)
{
    const std::u16string_view word = last_word(before);
    std::u16string small(word.substr(0, longest_abbreviation + 1));
    std::ranges::transform(small, small.begin(), lower_ascii<char16_t>);
    if (is_among(never_last, small) || (is_among(not_before_number, small) && is_digit(next)))
        return false;
    if (is_among(not_before_number, small))
        return true;
    if (is_dotted(word) || is_among(last_before_capital, small))
        return !is_lower(next) && !is_digit(next);
    // An initial; but "I" ends many a sentence.
    if (word.size() == 1 && is_letter(word[0]) && !is_lower(word[0]) && word[0] != u'I')
        return false;
    // "1. Introduction": the number of a heading or of a list's row.
    const bool all_digits = !word.empty() && std::all_of(word.begin(), word.end(), is_digit);
    return !(all_digits && word.size() == before.size() && word.size() <= 3);
}

/// The first character of the word that `rest` begins with, opening quotes and brackets left out,
/// or 0 if that takes reading markup.
char16_t next_letter(std::u16string_view rest)
{
    constexpr std::size_t most_openers = 4;
    for (const char16_t c : rest.substr(0, most_openers))
        if (!is_opener(c))
            return reading_kind(c) == ReadingKind::plain ? c : u'\0';
    return 0;
}

/// Whether a sentence ends with `text`, which ends in a full stop, question or exclamation mark,
/// closing quotes and brackets after it included. White space follows, and then `next`, the first
/// character of the next word, opening quotes and brackets left out; 0 if nobody knows.
bool sentence_ends(std::u16string_view text, char16_t next)
{
    std::size_t end = text.size();
    while (end > 0 && is_closer(text[end - 1]))
        --end;
    // "'Why?' he asked": the sentence goes on after the quote.
    if (end < text.size() && is_lower(next))
        return false;
    if (end == 0)
        return true;
    const char16_t mark = text[end - 1];
    const std::u16string_view before = text.substr(0, end - 1);
    const bool ellipsis = mark == u'.' && (before.ends_with(u'.') || before.ends_with(u". "));
    if (mark == u'\u2026' || ellipsis)
        return !is_lower(next);
    return mark != u'.' || full_stop_ends(before, next);
}

} // namespace

SentenceGatherer::SentenceGatherer(
    std::u16string_view source, bool markup, const VoiceChooser& voices, ReadingPlace start)
    : m_source(source)
    , m_markup(markup)
    , m_voices(voices)
    , m_scanner(source)
    , m_place(std::move(start))
{
}

bool SentenceGatherer::gather(Sentence& sentence)
{
    m_draft.restart(sentence);
    m_finished = false;
    m_pending = Pending::none;
    m_line_ends = 0;
    m_gather_begin = m_place.offset;
    while (!m_finished && m_place.offset < m_source.size())
        step();
    if (!m_finished && m_draft.has_content())
        finish();
    return m_finished;
}

std::uint32_t SentenceGatherer::span_end() const
{
    return m_place.cdata_end ? m_place.cdata_end : static_cast<std::uint32_t>(m_source.size());
}

void SentenceGatherer::step()
{
    if (m_place.cdata_end && m_place.offset >= m_place.cdata_end) {
        leave_cdata();
        return;
    }
    switch (reading_kind(m_source[m_place.offset])) {
    case ReadingKind::plain:
        return take_plain();
    case ReadingKind::white:
        return take_white();
    case ReadingKind::terminator:
        return take_terminator(Pending::terminator);
    case ReadingKind::wide_terminator:
        return take_terminator(Pending::wide_terminator);
    case ReadingKind::markup:
        return m_markup && !m_place.cdata_end ? take_markup() : take_plain();
    case ReadingKind::surrogate:
        return take_surrogate();
    }
}

/// Takes plain characters and single blanks between them, up to anything that needs a thought.
void SentenceGatherer::take_plain()
{
    const std::uint32_t from = m_place.offset;
    const char16_t first = m_source[from];
    if (m_pending != Pending::none) {
        if (is_closer(first)) {
            take_units(1);
            return;
        }
        if (ends_before(first))
            return;
    }
    const std::size_t room
        = longest_sentence - std::min<std::size_t>(m_draft.size(), longest_sentence);
    const auto end = static_cast<std::uint32_t>(
        std::min<std::size_t>(span_end(), from + std::max<std::size_t>(room, 1)));
    std::uint32_t last_blank = from;
    std::uint32_t at = from + 1;
    for (; at < end; ++at) {
        if (reading_kind(m_source[at]) == ReadingKind::plain)
            continue;
        if (m_source[at] != u' ' || at + 1 >= end
            || reading_kind(m_source[at + 1]) != ReadingKind::plain)
            break;
        last_blank = at;
    }
    take_units(at - from);
    if (last_blank > from)
        m_draft.mark_word_end_at(m_draft.size() - (at - last_blank), last_blank, m_place.cdata_end);
    cut_if_endless();
}

void SentenceGatherer::take_white()
{
    m_draft.mark_word_end(m_place);
    const std::uint32_t end = span_end();
    std::uint32_t at = m_place.offset;
    for (; at < end && is_white(m_source[at]); ++at)
        m_line_ends += line_ends_of(m_source[at], at + 1 < end ? m_source[at + 1] : u'\0');
    if (m_draft.has_content()) {
        const bool bullet = m_line_ends > 0 && at + 1 < end && is_bullet(m_source[at])
            && is_white(m_source[at + 1]);
        if (bullet || m_line_ends >= paragraph_line_ends || pending_ends(at))
            return finish();
    }
    const std::uint32_t length = at - m_place.offset;
    if (m_draft.has_content() && !m_draft.ends_white())
        m_draft.append_white(length <= longest_kept_blanks ? length : 1, m_place.offset);
    m_pending = Pending::none;
    m_place.offset = at;
    cut_if_endless();
}

/// Whether a mark that was read last ends the sentence, now that white space follows up to `next`.
bool SentenceGatherer::pending_ends(std::uint32_t next) const
{
    if (m_pending != Pending::terminator)
        return m_pending == Pending::wide_terminator;
    // "Well . . . maybe", and a question mark after a blank, as French sets it.
    const bool more
        = next < span_end() && (reading_kind(m_source[next]) == ReadingKind::terminator);
    return !more
        && sentence_ends(m_draft.text(), next_letter(m_source.substr(next, span_end() - next)));
}

void SentenceGatherer::take_terminator(Pending pending)
{
    take_units(1);
    m_pending = std::max(m_pending, pending);
    cut_if_endless();
}

void SentenceGatherer::take_surrogate()
{
    const char16_t first = m_source[m_place.offset];
    if (m_pending != Pending::none && ends_before(first))
        return;
    const bool pair = is_high_surrogate(first) && m_place.offset + 1 < span_end()
        && is_low_surrogate(m_source[m_place.offset + 1]);
    if (pair) {
        take_units(2);
    } else {
        m_draft.begin_text(replacement, m_place);
        m_draft.append(std::u16string_view(&replacement, 1), m_place.offset++);
        m_line_ends = 0;
    }
    cut_if_endless();
}

void SentenceGatherer::take_markup()
{
    const Markup markup = m_scanner.scan(m_place.offset);
    if (markup.kind == Markup::Kind::none)
        return take_plain();
    const auto end = static_cast<std::uint32_t>(markup.end);
    if (markup.kind == Markup::Kind::character)
        return take_character(markup.character, end);
    m_draft.mark_word_end(m_place);
    if (markup.kind == Markup::Kind::cdata)
        m_place.cdata_end = static_cast<std::uint32_t>(markup.content_end);
    if (markup.kind == Markup::Kind::cdata || markup.kind == Markup::Kind::skipped)
        m_place.offset = end;
    else
        take_tag(markup);
    if (m_finished)
        return;
    m_draft.part_words();
    cut_if_endless();
}

void SentenceGatherer::leave_cdata()
{
    m_draft.mark_word_end(m_place);
    m_place.offset += static_cast<std::uint32_t>(cdata_end_mark_length);
    m_place.cdata_end = 0;
    m_draft.part_words();
}

void SentenceGatherer::take_character(char32_t character, std::uint32_t end)
{
    std::u16string units;
    append_character(units, character);
    const char16_t first = units[0];
    const ReadingKind kind = reading_kind(first);
    const bool white = kind == ReadingKind::white;
    const bool ends_sentence
        = kind == ReadingKind::terminator || kind == ReadingKind::wide_terminator;
    if (white) {
        m_draft.mark_word_end(m_place);
        if (m_draft.has_content() && pending_ends(end))
            return finish();
    } else if (m_pending != Pending::none && !ends_sentence && !is_closer(first)
        && ends_before(first)) {
        return;
    }
    if (!white) {
        m_draft.begin_text(first, m_place);
        m_line_ends = 0;
    }
    if (!white || m_draft.has_content()) {
        m_draft.append_entity(white ? u" " : units, m_place.offset, end - m_place.offset);
        m_draft.set_ends_white(white);
    }
    if (ends_sentence)
        m_pending = std::max(m_pending,
            kind == ReadingKind::terminator ? Pending::terminator : Pending::wide_terminator);
    else if (white)
        m_pending = Pending::none;
    m_place.offset = end;
    cut_if_endless();
}

void SentenceGatherer::take_tag(const Markup& tag)
{
    TagEffect effect
        = effect_of({ tag, m_scanner.attributes(), m_place.offset }, m_place.state, m_voices);
    if (tag.kind == Markup::Kind::end_tag)
        speak_empty_pronunciation(effect);
    if (effect.state != m_place.state) {
        m_draft.keep_state(m_place.state);
        if (effect.state->settings() != m_place.state->settings())
            m_draft.add_settings(effect.state->settings());
        m_place.state = std::move(effect.state);
    }
    const std::uint32_t begin = m_place.offset;
    m_place.offset = static_cast<std::uint32_t>(tag.end);
    std::visit(
        [&](auto& item) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(item)>, std::monostate>)
                add_item(std::move(item), begin);
        },
        effect.item);
}

/// A pron element that encloses nothing is spoken all the same, where it ends.
void SentenceGatherer::speak_empty_pronunciation(TagEffect& effect)
{
    const MarkupState* opened = m_place.state->innermost(Element::pron);
    if (!opened || opened == effect.state->innermost(Element::pron))
        return;
    const PronunciationPtr& pronunciation = opened->settings()->pronunciation;
    if (!pronunciation || pronunciation->source_begin < m_gather_begin)
        return;
    if (!m_draft.has_content() || m_draft.word_end() <= pronunciation->source_begin)
        effect.item = pronunciation;
}

void SentenceGatherer::add_item(decltype(SentenceMark::what) item, std::uint32_t begin)
{
    const bool spoken = std::holds_alternative<PronunciationPtr>(item);
    const bool lone = !m_draft.has_content();
    m_draft.add_item(std::move(item), begin, m_place);
    m_pending = spoken ? Pending::none : m_pending;
    m_finished = lone && !spoken;
}

/// Whether the sentence ends right before the character `c`, which is no closing sign.
bool SentenceGatherer::ends_before(char16_t c)
{
    const bool wide = m_pending == Pending::wide_terminator;
    // "Good.</p><p>Day": no white space, but markup between two sentences.
    const bool new_word = m_draft.is_joint() && is_wordish(c) && !(c >= u'0' && c <= u'9')
        && !(c >= u'a' && c <= u'z') && sentence_ends(m_draft.text(), c);
    m_pending = Pending::none;
    if (!wide && !new_word)
        return false;
    finish();
    return true;
}

/// Takes units that stand for themselves.
void SentenceGatherer::take_units(std::uint32_t count)
{
    m_draft.begin_text(m_source[m_place.offset], m_place);
    m_draft.append(m_source.substr(m_place.offset, count), m_place.offset);
    m_place.offset += count;
    m_line_ends = 0;
}

void SentenceGatherer::finish()
{
    m_draft.mark_word_end(m_place);
    finish_at_word_end();
}

void SentenceGatherer::finish_at_word_end()
{
    m_place = m_draft.finish(m_place);
    m_finished = true;
}

void SentenceGatherer::cut_if_endless()
{
    const std::size_t size = m_draft.size();
    if (!m_draft.has_content()
        || (size < longest_sentence && m_place.offset - m_draft.begin() < longest_sentence_source))
        return;
    if (m_draft.size_at_word_end() > 0 && size - m_draft.size_at_word_end() <= farthest_cut)
        finish_at_word_end();
    else
        finish();
}

} // namespace tessavox::voice
