#include "platform/voice/text/text_reader.h"

#include "platform/text.h"
#include "platform/voice/text/reading_character.h"
#include "platform/voice/text/sentence_gatherer.h"
#include "platform/voice/text/utterance_parts.h"
#include "platform/voice/text/word_finder.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tessavox::voice {

namespace {

constexpr std::uint32_t longest_word = 100; // engines lose the tail of longer ones
constexpr std::size_t longest_utterance = 800;
// A sentence longer than the first is cut at the first clause that ends after the second.
constexpr std::size_t long_sentence = 300;
constexpr std::size_t shortest_first_cut = 200;

bool is_clause_mark(char16_t c)
{
    constexpr std::u16string_view marks = u",;:\u2013\u2014\u060C\u061B";
    return marks.find(c) != std::u16string_view::npos;
}

bool is_wide_clause_mark(char16_t c)
{
    return c == 0x3001 || c == 0xFF0C || c == 0xFF1A || c == 0xFF1B;
}

/// Whether a clause ends after the character at `at`.
bool clause_ends(std::u16string_view text, std::size_t at)
{
    return is_wide_clause_mark(text[at])
        || (is_clause_mark(text[at]) && at + 1 < text.size() && text[at + 1] == u' ');
}

std::size_t last_token_edge(const std::vector<Token>& tokens, std::size_t from, std::size_t end)
{
    const auto after = std::upper_bound(tokens.begin(), tokens.end(), end,
        [](std::size_t place, const Token& token) { return place < token.begin; });
    if (after == tokens.begin())
        return end;
    const Token& last = *std::prev(after);
    if (last.begin + last.length <= end)
        return end;
    return last.begin > from ? last.begin : end;
}

/// Where the utterance that begins at `from` is cut.
std::size_t cut_after(const Utterance& run, std::size_t from, bool first)
{
    const std::u16string_view text = run.text;
    const std::size_t rest = text.size() - from;
    const std::size_t limit = std::min(text.size(), from + longest_utterance);
    if (first && rest > long_sentence) {
        for (std::size_t at = from + shortest_first_cut; at + 1 < limit; ++at) {
            if (clause_ends(text, at))
                return at + 1;
        }
    }
    if (rest <= longest_utterance)
        return text.size();
    for (std::size_t at = limit - 1; at > from + longest_utterance / 2; --at) {
        if (clause_ends(text, at))
            return at + 1;
    }
    for (std::size_t at = limit; at > from + 1; --at) {
        if (text[at - 1] == u' ')
            return at;
    }
    const std::size_t edge = last_token_edge(run.tokens, from, limit);
    return is_low_surrogate(text[edge]) && edge > from + 1 ? edge - 1 : edge;
}

/// The part of `run` from `begin` to `end`, without blanks round it.
Utterance cut_out(const Utterance& run, std::size_t begin, std::size_t end)
{
    while (begin < end && run.text[begin] == u' ')
        ++begin;
    while (end > begin && run.text[end - 1] == u' ')
        --end;
    return part_of(run, begin, end);
}

/// Contexts end where the text ends.
void end_contexts(Utterance& run)
{
    const auto size = static_cast<std::uint32_t>(run.text.size());
    std::erase_if(run.contexts, [&](const ContextHint& hint) { return hint.begin >= size; });
    for (ContextHint& hint : run.contexts)
        hint.length = std::min(hint.length, size - hint.begin);
}

bool spoken_alike(const MarkupSettings& left, const MarkupSettings& right)
{
    // What stands in place of its whole text is not divided by markup inside it.
    return left.pronunciation == right.pronunciation
        && (left.pronunciation || left.style == right.style);
}

/// An item, and where in the text given to Speak it begins.
struct PlacedItem {
    SpeechItem item;
    std::uint32_t source_begin = 0;
};

/// Turns a gathered sentence into the utterances that engines speak.
class UtteranceComposer {
public:
    explicit UtteranceComposer(bool speak_punctuation)
        : m_speak_punctuation(speak_punctuation)
    {
    }

    /// Appends the items of the sentence. An utterance has one style, so a change of style begins
    /// another one; the first one of a long sentence is short, so that it sounds soon.
    void compose(const Sentence& sentence, std::vector<PlacedItem>& items)
    {
        m_sentence = &sentence;
        m_items = &items;
        m_first_item = items.size();
        m_settings = sentence.settings;
        std::uint32_t at = 0;
        for (const SentenceMark& mark : sentence.marks) {
            add_stretch(at, mark.at);
            at = mark.at;
            if (std::holds_alternative<std::monostate>(mark.what))
                continue;
            if (const auto* settings = std::get_if<MarkupSettingsPtr>(&mark.what)) {
                m_settings = *settings;
                continue;
            }
            if (const auto* bookmark = std::get_if<Bookmark>(&mark.what); bookmark && m_run_begun) {
                m_run.bookmarks.push_back(
                    { static_cast<std::uint32_t>(m_run.tokens.size()), bookmark->name });
                continue;
            }
            flush();
            add_item(
                mark.what, at == 0 ? sentence.extent.source_begin : sentence.map.end_of(at - 1));
        }
        add_stretch(at, static_cast<std::uint32_t>(sentence.text.size()));
        flush();
        finish_sentence();
    }

private:
    void add_stretch(std::uint32_t begin, std::uint32_t end)
    {
        if (begin == end)
            return;
        const std::u16string_view text
            = std::u16string_view(m_sentence->text).substr(begin, end - begin);
        const bool white = std::all_of(text.begin(), text.end(), is_white);
        if (m_run_begun && !white && !spoken_alike(*m_run_settings, *m_settings))
            flush_before_word();
        const SpeechStyle& style = m_settings->style;
        const WordRule rule = style.spell ? WordRule::characters
            : m_speak_punctuation         ? WordRule::words_and_punctuation
                                          : WordRule::words;
        m_found.clear();
        m_finder.find(text, rule, m_found);
        if (!m_run_begun) {
            if (white)
                return;
            m_run_begun = true;
            m_run_settings = m_settings;
            m_run_source = m_sentence->map.begin_of(begin);
        }
        set_level();
        if (m_run.tokens.empty())
            m_run.tokens.reserve(m_found.size());
        const std::size_t run_begin = m_run.text.size();
        std::uint32_t copied = 0;
        const auto copy_to = [&](std::uint32_t place) {
            m_run.text.append(text.substr(copied, place - copied));
            copied = place;
        };
        for (const FoundWord& word : m_found) {
            for (std::uint32_t from = word.begin; from < word.end;) {
                std::uint32_t to = std::min(word.end, from + longest_word);
                if (to < word.end && is_low_surrogate(text[to]))
                    --to;
                if (from > word.begin) {
                    copy_to(from);
                    m_run.text.push_back(u' ');
                }
                const auto text_begin
                    = static_cast<std::uint32_t>(m_run.text.size() + (from - copied));
                const std::uint32_t source = m_sentence->map.begin_of(begin + from);
                m_run.tokens.push_back({ text_begin, to - from, source,
                    m_sentence->map.end_of(begin + to - 1) - source });
                from = to;
            }
        }
        copy_to(static_cast<std::uint32_t>(text.size()));
        hint_context(run_begin);
    }
    /// The words found now have the level that is in force.
    void set_level()
    {
        const int before = m_run.levels.empty() ? 100 : m_run.levels.back().percent;
        if (!m_found.empty() && before != m_settings->volume)
            m_run.levels.push_back(
                { static_cast<std::uint32_t>(m_run.tokens.size()), m_settings->volume });
    }
    /// The run's text from `begin` on has the context that is in force.
    void hint_context(std::size_t begin)
    {
        if (m_settings->context.empty())
            return;
        const auto end = static_cast<std::uint32_t>(m_run.text.size());
        if (!m_run.contexts.empty()) {
            ContextHint& last = m_run.contexts.back();
            if (last.begin + last.length == begin && last.context == m_settings->context) {
                last.length = end - last.begin;
                return;
            }
        }
        const auto from = static_cast<std::uint32_t>(begin);
        m_run.contexts.push_back({ from, end - from, m_settings->context });
    }
    /// Ends the run that is spoken in one style.
    void flush()
    {
        Utterance run = std::exchange(m_run, {});
        const bool begun = std::exchange(m_run_begun, false);
        if (!begun)
            return;
        run.style = finished_style(*m_run_settings, m_speak_punctuation);
        while (run.text.back() == u' ')
            run.text.pop_back();
        end_contexts(run);
        const std::size_t size = run.text.size();
        const bool short_enough = cut_after(run, 0, m_items->size() == m_first_item) == size;
        if (short_enough && run.text.front() != u' ')
            return add_part(std::move(run), true);
        for (std::size_t from = 0; from < size;) {
            const bool first = m_items->size() == m_first_item;
            const std::size_t end = cut_after(run, from, first);
            Utterance part = cut_out(run, from, end);
            if (!part.text.empty())
                add_part(std::move(part), from == 0);
            from = end;
        }
    }
    /// Ends the run; what stands after its last word belongs to the next one.
    void flush_before_word()
    {
        std::vector<BookmarkPlace> waiting;
        while (!m_run.bookmarks.empty() && m_run.bookmarks.back().token == m_run.tokens.size()) {
            waiting.insert(waiting.begin(), { 0, std::move(m_run.bookmarks.back().name) });
            m_run.bookmarks.pop_back();
        }
        flush();
        m_run.bookmarks = std::move(waiting);
    }
    void add_part(Utterance part, bool first_of_run)
    {
        if (first_of_run && m_run_settings->pronunciation)
            part.pronunciation = m_run_settings->pronunciation->phonemes;
        const std::uint32_t source
            = part.tokens.empty() ? m_run_source : part.tokens.front().source_begin;
        m_items->push_back({ std::move(part), source });
    }
    void add_pronunciation(const Pronunciation& pronunciation)
    {
        Utterance utterance;
        utterance.pronunciation = pronunciation.phonemes;
        utterance.tokens.push_back({ 0, 0, pronunciation.source_begin,
            pronunciation.source_end - pronunciation.source_begin });
        utterance.style = finished_style(*m_settings, m_speak_punctuation);
        if (m_settings->volume != 100)
            utterance.levels = { { 0, m_settings->volume } };
        m_items->push_back({ std::move(utterance), pronunciation.source_begin });
    }
    void add_item(const decltype(SentenceMark::what)& what, std::uint32_t source_begin)
    {
        if (const auto* silence = std::get_if<Silence>(&what))
            m_items->push_back({ *silence, source_begin });
        else if (const auto* bookmark = std::get_if<Bookmark>(&what))
            m_items->push_back({ *bookmark, source_begin });
        else if (const auto* pronunciation = std::get_if<PronunciationPtr>(&what))
            add_pronunciation(**pronunciation);
    }
    void finish_sentence()
    {
        Utterance* last = nullptr;
        for (std::size_t at = m_first_item; at < m_items->size(); ++at) {
            auto* utterance = std::get_if<Utterance>(&(*m_items)[at].item);
            if (!utterance)
                continue;
            if (!last)
                utterance->sentence = m_sentence->extent;
            last = utterance;
        }
        if (last)
            last->ends_sentence = true;
    }

    bool m_speak_punctuation;
    WordFinder m_finder;
    std::vector<FoundWord> m_found;

    const Sentence* m_sentence = nullptr;
    std::vector<PlacedItem>* m_items = nullptr;
    std::size_t m_first_item = 0; // of this sentence in *m_items
    MarkupSettingsPtr m_settings; // in force at this place of the sentence
    MarkupSettingsPtr m_run_settings;
    Utterance m_run; // what is to be spoken in one style
    std::uint32_t m_run_source = 0;
    bool m_run_begun = false;
};

} // namespace

bool looks_like_markup(std::u16string_view text)
{
    return text.starts_with(u'<');
}

/// Gathers a sentence at a time. A place inside a sentence is remembered as where its gathering
/// began and how many of its items are over, so that going on there repeats every decision.
class TextReader::Impl {
public:
    Impl(TextSlice text, ReaderOptions options, const VoiceChooser& voices,
        const ReadingPlace& start)
        : m_text(std::move(text))
        , m_gatherer(m_text.view(), options.markup, voices, gather_place(start))
        , m_composer(options.speak_punctuation)
        , m_start(start)
    {
    }

    std::optional<SpeechItem> next()
    {
        while (m_next >= m_items.size()) {
            if (!read_sentence())
                return std::nullopt;
        }
        return std::move(m_items[m_next++].item);
    }

    ReadingPlace place() const
    {
        if (m_next >= m_items.size())
            return m_start.items_over > 0 ? m_start : m_gatherer.place();
        ReadingPlace place = m_sentence_place;
        if (m_next > 0) {
            place.sentence_begin = std::exchange(place.offset, m_items[m_next].source_begin);
            place.items_over = static_cast<std::uint32_t>(m_next);
        }
        return place;
    }

private:
    static ReadingPlace gather_place(ReadingPlace start)
    {
        if (std::exchange(start.items_over, 0) > 0)
            start.offset = start.sentence_begin;
        if (!start.state)
            start.state = MarkupState::initial();
        return start;
    }

    bool read_sentence()
    {
        m_items.clear();
        m_next = std::exchange(m_start.items_over, 0);
        m_sentence_place = m_gatherer.place();
        if (!m_gatherer.gather(m_sentence))
            return false;
        m_composer.compose(m_sentence, m_items);
        return true;
    }

    TextSlice m_text;
    SentenceGatherer m_gatherer;
    UtteranceComposer m_composer;
    Sentence m_sentence;
    ReadingPlace m_sentence_place; // where the sentence of m_items was gathered from
    std::vector<PlacedItem> m_items;
    std::size_t m_next = 0;
    ReadingPlace m_start; // without items that are over once its sentence is read
};

TextReader::TextReader(
    TextSlice text, ReaderOptions options, const VoiceChooser& voices, const ReadingPlace& start)
    : m_impl(std::make_unique<Impl>(std::move(text), options, voices, start))
{
}

TextReader::~TextReader() = default;
TextReader::TextReader(TextReader&&) noexcept = default;
TextReader& TextReader::operator=(TextReader&&) noexcept = default;

std::optional<SpeechItem> TextReader::next()
{
    return m_impl->next();
}

ReadingPlace TextReader::place() const
{
    return m_impl->place();
}

} // namespace tessavox::voice
