#include "platform/voice/text/sentence_gatherer.h"

#include "platform/voice/text/reading_character.h"
#include "platform/voice/text/sentence_end.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

// A text without any full stop is still read in pieces, so that its first word is not late.
constexpr std::size_t longest_sentence = 3000; // decoded code units
constexpr std::uint32_t longest_sentence_source = 1 << 16; // markup included
constexpr std::size_t farthest_cut = 400; // a longer word is cut itself
constexpr std::uint32_t longest_kept_blanks = 8; // longer white space becomes one blank
constexpr std::uint32_t paragraph_line_ends = 2;

constexpr char16_t replacement = 0xFFFD;

bool is_opener(char16_t c)
{
    constexpr std::u16string_view openers
        = u"\"'([{\u00A1\u00AB\u00BB\u00BF\u2018\u201A\u201C\u201D\u201E\u2039\u203A\u3008"
          u"\u300A\u300C\u300E\u3010";
    return openers.find(c) != std::u16string_view::npos;
}

bool is_bullet(char16_t c)
{
    constexpr std::u16string_view bullets = u"-*\u00B7\u2013\u2014\u2022\u2023\u25E6\u25AA\u25CF";
    return bullets.find(c) != std::u16string_view::npos;
}

/// How many line ends `c` counts; a carriage return counts with its line feed.
std::uint32_t line_ends_of(char16_t c, char16_t next)
{
    switch (c) {
    case u'\n':
    case 0x85:
    case 0x2028:
        return 1;
    case u'\r':
        return next == u'\n' ? 0 : 1;
    case u'\f':
    case 0x2029:
        return paragraph_line_ends;
    default:
        return 0;
    }
}

} // namespace

void SourceMap::add(std::uint32_t text_begin, std::uint32_t source_begin)
{
    if (!m_segments.empty()) {
        const Segment& last = m_segments.back();
        if (last.source_length == one_for_one
            && last.source_begin + (text_begin - last.text_begin) == source_begin)
            return;
    }
    m_segments.push_back({ text_begin, source_begin, one_for_one });
}

void SourceMap::add_entity(
    std::uint32_t text_begin, std::uint32_t source_begin, std::uint32_t source_length)
{
    m_segments.push_back({ text_begin, source_begin, source_length });
}

const SourceMap::Segment& SourceMap::segment_of(std::uint32_t unit) const
{
    if (m_last >= m_segments.size() || m_segments[m_last].text_begin > unit)
        m_last = 0;
    while (m_last + 1 < m_segments.size() && m_segments[m_last + 1].text_begin <= unit)
        ++m_last;
    return m_segments[m_last];
}

std::uint32_t SourceMap::begin_of(std::uint32_t unit) const
{
    const Segment& segment = segment_of(unit);
    const bool entity = segment.source_length != one_for_one;
    return segment.source_begin + (entity ? 0 : unit - segment.text_begin);
}

std::uint32_t SourceMap::end_of(std::uint32_t unit) const
{
    const Segment& segment = segment_of(unit);
    const bool entity = segment.source_length != one_for_one;
    return segment.source_begin + (entity ? segment.source_length : unit - segment.text_begin + 1);
}

SentenceGatherer::SentenceGatherer(
    std::u16string_view source, bool markup, const VoiceChooser& voices, GatherPlace start)
    : m_source(source)
    , m_markup(markup)
    , m_voices(voices)
    , m_scanner(source)
    , m_place(std::move(start))
{
}

bool SentenceGatherer::gather(Sentence& sentence)
{
    sentence.text.clear();
    sentence.map.clear();
    sentence.marks.clear();
    m_sentence = &sentence;
    m_finished = m_fresh = m_joint = m_white = false;
    m_pending = Pending::none;
    m_line_ends = 0;
    m_text_end = {};
    m_gather_begin = m_place.offset;
    while (!m_finished && m_place.offset < m_source.size())
        step();
    if (!m_finished && has_content())
        finish();
    return m_finished;
}

bool SentenceGatherer::has_content() const
{
    return !m_sentence->text.empty() || !m_sentence->marks.empty();
}

std::uint32_t SentenceGatherer::span_end() const
{
    return m_place.cdata_end ? m_place.cdata_end : static_cast<std::uint32_t>(m_source.size());
}

std::uint32_t SentenceGatherer::text_size() const
{
    return static_cast<std::uint32_t>(m_sentence->text.size());
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
            begin_text(first);
            append_linear(1);
            return;
        }
        if (ends_before(first))
            return;
    }
    begin_text(first);
    const std::size_t room = longest_sentence - std::min(m_sentence->text.size(), longest_sentence);
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
    const std::uint32_t size_before = text_size();
    append_linear(at - from);
    if (last_blank > from) {
        m_text_end = { { last_blank, m_place.cdata_end, nullptr },
            size_before + (last_blank - from), m_sentence->marks.size() };
    }
    cut_if_endless();
}

void SentenceGatherer::take_white()
{
    mark_text_end();
    const std::uint32_t end = span_end();
    std::uint32_t at = m_place.offset;
    for (; at < end && is_white(m_source[at]); ++at)
        m_line_ends += line_ends_of(m_source[at], at + 1 < end ? m_source[at + 1] : u'\0');
    if (has_content()) {
        const bool bullet = m_line_ends > 0 && at + 1 < end && is_bullet(m_source[at])
            && is_white(m_source[at + 1]);
        if (bullet || m_line_ends >= paragraph_line_ends || pending_ends(at))
            return finish();
    }
    const std::uint32_t length = at - m_place.offset;
    if (has_content() && !m_white) {
        m_sentence->map.add(text_size(), m_place.offset);
        m_sentence->text.append(length <= longest_kept_blanks ? length : 1, u' ');
        m_white = true;
    }
    m_pending = Pending::none;
    m_place.offset = at;
    cut_if_endless();
}

/// Whether a mark that was read last ends the sentence, now that white space follows up to `next`.
bool SentenceGatherer::pending_ends(std::uint32_t next) const
{
    if (m_pending != Pending::terminator)
        return m_pending == Pending::wide_terminator;
    // "Well . . . maybe", and a question mark behind a blank, as French sets it.
    const bool more
        = next < span_end() && (reading_kind(m_source[next]) == ReadingKind::terminator);
    return !more && sentence_ends(m_sentence->text, next_letter(next));
}

/// The first character of the word at `from`, or 0 if that takes reading markup.
char16_t SentenceGatherer::next_letter(std::uint32_t from) const
{
    constexpr std::uint32_t most_openers = 4;
    const std::uint32_t end = std::min(span_end(), from + most_openers);
    while (from < end && is_opener(m_source[from]))
        ++from;
    if (from >= end)
        return 0;
    const ReadingKind kind = reading_kind(m_source[from]);
    return kind == ReadingKind::plain ? m_source[from] : u'\0';
}

void SentenceGatherer::take_terminator(Pending pending)
{
    begin_text(m_source[m_place.offset]);
    append_linear(1);
    m_pending = std::max(m_pending, pending);
    cut_if_endless();
}

void SentenceGatherer::take_surrogate()
{
    const char16_t first = m_source[m_place.offset];
    if (m_pending != Pending::none && ends_before(first))
        return;
    begin_text(first);
    const bool pair = is_high_surrogate(first) && m_place.offset + 1 < span_end()
        && is_low_surrogate(m_source[m_place.offset + 1]);
    append_linear(pair ? 2 : 1);
    if (!pair)
        m_sentence->text.back() = replacement;
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
    mark_text_end();
    if (markup.kind == Markup::Kind::cdata)
        m_place.cdata_end = static_cast<std::uint32_t>(markup.content_end);
    if (markup.kind == Markup::Kind::cdata || markup.kind == Markup::Kind::skipped)
        m_place.offset = end;
    else
        take_tag(markup);
    if (m_finished)
        return;
    join();
    cut_if_endless();
}

void SentenceGatherer::leave_cdata()
{
    mark_text_end();
    m_place.offset += static_cast<std::uint32_t>(cdata_end_mark_length);
    m_place.cdata_end = 0;
    join();
}

/// Words end where markup stands.
void SentenceGatherer::join()
{
    if (!has_content())
        return;
    m_joint = true;
    if (m_sentence->marks.empty() || m_sentence->marks.back().at != text_size())
        m_sentence->marks.push_back({ text_size(), {} });
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
        mark_text_end();
        if (has_content() && pending_ends(end))
            return finish();
    } else if (m_pending != Pending::none && !ends_sentence && !is_closer(first)
        && ends_before(first)) {
        return;
    }
    if (!white || has_content()) {
        if (!white)
            begin_text(first);
        m_sentence->map.add_entity(text_size(), m_place.offset, end - m_place.offset);
        m_sentence->text += white ? std::u16string_view(u" ") : units;
        m_white = white;
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
        if (!m_text_end.place.state)
            m_text_end.place.state = m_place.state;
        if (has_content() && effect.state->settings() != m_place.state->settings())
            m_sentence->marks.push_back({ text_size(), effect.state->settings() });
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
    if (!has_content() || m_text_end.place.offset <= pronunciation->source_begin)
        effect.item = pronunciation;
}

void SentenceGatherer::add_item(decltype(SentenceMark::what) item, std::uint32_t begin)
{
    const auto* pronunciation = std::get_if<PronunciationPtr>(&item);
    const bool lone = !has_content();
    if (lone) {
        m_sentence->settings = m_place.state->settings();
        m_begin = pronunciation ? (*pronunciation)->source_begin : begin;
        m_sentence->extent = { m_begin, m_place.offset - m_begin };
    }
    m_fresh = m_fresh || pronunciation;
    m_pending = pronunciation ? Pending::none : m_pending;
    m_finished = lone && !pronunciation;
    m_sentence->marks.push_back({ text_size(), std::move(item) });
}

/// Whether the sentence ends right before the character `c`, which is no closing sign.
bool SentenceGatherer::ends_before(char16_t c)
{
    const bool wide = m_pending == Pending::wide_terminator;
    // "Good.</p><p>Day": no white space, but markup between two sentences.
    const bool new_word = m_joint && is_wordish(c) && !(c >= u'0' && c <= u'9')
        && !(c >= u'a' && c <= u'z') && sentence_ends(m_sentence->text, c);
    m_pending = Pending::none;
    if (!wide && !new_word)
        return false;
    finish();
    return true;
}

void SentenceGatherer::begin_text(char16_t first)
{
    if (!has_content()) {
        m_sentence->settings = m_place.state->settings();
        m_begin = m_place.offset;
    } else if (m_joint && text_size() > 0 && is_wordish(m_sentence->text.back())
        && is_wordish(first)) {
        m_sentence->map.add_entity(text_size(), m_place.offset, 0);
        m_sentence->text.push_back(u' ');
    }
    m_joint = m_white = false;
    m_fresh = true;
    m_line_ends = 0;
}

void SentenceGatherer::append_linear(std::uint32_t length)
{
    m_sentence->map.add(text_size(), m_place.offset);
    m_sentence->text.append(m_source.substr(m_place.offset, length));
    m_place.offset += length;
}

void SentenceGatherer::mark_text_end()
{
    if (!m_fresh)
        return;
    m_fresh = false;
    m_text_end
        = { { m_place.offset, m_place.cdata_end, nullptr }, text_size(), m_sentence->marks.size() };
}

void SentenceGatherer::finish()
{
    mark_text_end();
    finish_at_text_end();
}

/// The sentence ends with its last word; white space and markup behind it belong to the next one.
void SentenceGatherer::finish_at_text_end()
{
    m_sentence->text.resize(m_text_end.text_size);
    m_sentence->marks.resize(m_text_end.marks);
    if (!m_text_end.place.state)
        m_text_end.place.state = m_place.state;
    m_place = m_text_end.place;
    m_sentence->extent = { m_begin, m_place.offset - m_begin };
    if (m_place.state->settings()->pronunciation) {
        // Phonemes stand for one sentence at most: a forgotten end tag must not silence a book.
        MarkupSettings settings = *m_place.state->settings();
        settings.pronunciation = nullptr;
        m_place.state = MarkupState::changed(
            m_place.state, std::make_shared<const MarkupSettings>(std::move(settings)));
    }
    m_finished = true;
}

void SentenceGatherer::cut_if_endless()
{
    const std::size_t size = m_sentence->text.size();
    if (!has_content()
        || (size < longest_sentence && m_place.offset - m_begin < longest_sentence_source))
        return;
    if (m_text_end.text_size > 0 && size - m_text_end.text_size <= farthest_cut)
        finish_at_text_end();
    else
        finish();
}

} // namespace tessavox::voice
