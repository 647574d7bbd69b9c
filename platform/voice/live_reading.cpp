#include "platform/voice/live_reading.h"

#include "platform/failure.h"
#include "platform/voice/text/utterance_parts.h"
#include "platform/voice/utterance_events.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tessavox::voice {

namespace {

constexpr int slices_a_second = 20;
constexpr std::size_t longest_first_units = 160; // some ten seconds of speech, some ms of work
constexpr int usual_rate = 22050; // for a silence before the first word

} // namespace

LiveReading::LiveReading(
    const VoiceCatalog& catalog, Playback& playback, const Job& job, MarkupStatePtr& state)
    : m_catalog(catalog)
    , m_playback(playback)
    , m_job(job)
    , m_state(state)
    , m_voices(catalog, job)
    , m_start{ 0, state }
    , m_reader(job.text, job.reading, m_voices, m_start)
    , m_composer(job.format)
    , m_rate_version(playback.rate_version())
    , m_voice(job.voice)
{
}

void LiveReading::run()
{
    while (!m_job.cancelled) {
        if (const auto skip = m_playback.take_skip(m_job))
            move(*skip);
        if (std::exchange(m_rate_version, m_playback.rate_version()) != m_rate_version)
            m_rate_changed = true;
        if (m_rate_changed)
            follow_rate();
        if (!m_pending.empty() || !m_pending_events.empty())
            send_pending();
        else if (m_converted < m_samples.size())
            convert_some();
        else if (m_ended) {
            m_playback.complete(m_job);
            if (!m_rate_changed)
                m_playback.wait_for_order(m_job, m_rate_version);
        } else if (!begin_next_item())
            end_stream();
        // The end of the job shows here first when it ended by itself.
        if (m_ended && !m_playback.holds(m_job))
            return;
    }
}

std::optional<LiveReading::Placed> LiveReading::next_placed()
{
    if (!m_backlog.empty()) {
        Placed placed = std::move(m_backlog.front());
        m_backlog.pop_front();
        return placed;
    }
    ReadingPlace place = m_reader.place();
    std::optional<SpeechItem> item = m_reader.next();
    if (!item)
        return std::nullopt;
    return Placed{ std::move(*item), std::move(place) };
}

// The sound starts when the first utterance is rendered, so a very long one is given in two parts.
void LiveReading::shorten_first(Placed& placed)
{
    auto* utterance = std::get_if<Utterance>(&placed.item);
    if (!utterance || !m_in_flight.empty())
        return;
    const std::size_t division = division_of(*utterance, longest_first_units);
    if (division == 0)
        return;
    m_backlog.push_front({ rest_of(*utterance, division), placed.place });
    *utterance = start_of(*utterance, division);
}

bool LiveReading::begin_next_item()
{
    std::optional<Placed> placed = next_placed();
    if (!placed)
        return false;
    shorten_first(*placed);
    forget_heard();
    m_samples.clear();
    m_converted = 0;
    Segment segment;
    segment.placed = std::move(*placed);
    segment.first_sequence = m_next_sequence;
    segment.voice = segment.voice_before = m_voice;
    segment.begin = m_composer.frame_of(0);
    const SpeechItem& item = segment.placed.item;
    if (const auto* utterance = std::get_if<Utterance>(&item))
        begin_utterance(segment, *utterance);
    else if (const auto* silence = std::get_if<Silence>(&item))
        begin_silence(*silence);
    else
        begin_bookmark(segment, std::get<Bookmark>(item));
    m_in_flight.push_back(std::move(segment));
    return true;
}

void LiveReading::begin_utterance(Segment& segment, const Utterance& utterance)
{
    segment.rate = rate_for(utterance.style, m_playback.rate());
    segment.voice = m_voices.voice_for(utterance.style);
    Rendering rendering;
    try {
        rendering = m_catalog.render(segment.voice, segment.rate, utterance, m_job.cancelled);
    } catch (const Failure&) {
        return; // an utterance that the engine can't speak is passed over
    }
    if (rendering.sample_rate <= 0)
        return;
    apply_levels(utterance, rendering);
    m_composer.begin(rendering.sample_rate, 1, m_pending);
    segment.begin = m_composer.frame_of(0);
    const auto frame_of = [this](std::uint64_t sample) { return m_composer.frame_of(sample); };
    const int changed = segment.voice != m_voice ? segment.voice : -1;
    m_voice = segment.voice;
    m_pending_events = events_of(utterance, rendering, changed, frame_of, m_next_sequence);
    for (const WordMark& mark : rendering.words)
        segment.words.push_back(frame_of(mark.frame));
    if (utterance.sentence)
        m_sentences.push_back({ segment.placed.place, segment.begin });
    m_samples = std::move(rendering.samples);
}

void LiveReading::begin_silence(const Silence& silence)
{
    const int rate = m_composer.rate_or(usual_rate);
    m_composer.begin(rate, 1, m_pending);
    m_samples.assign(static_cast<std::size_t>(rate) * silence.milliseconds / 1000, 0);
}

void LiveReading::begin_bookmark(const Segment& segment, const Bookmark& bookmark)
{
    m_pending_events.push_back(
        { segment.begin, m_next_sequence++, BookmarkReached{ bookmark.name } });
}

void LiveReading::convert_some()
{
    const auto rate = static_cast<std::size_t>(m_composer.rate_or(usual_rate));
    const std::size_t count = std::min(
        m_samples.size() - m_converted, std::max<std::size_t>(rate / slices_a_second, 1));
    const std::span<std::int16_t> some(m_samples.data() + m_converted, count);
    if (const std::size_t rising = std::min(std::exchange(m_fade_in, 0), count); rising > 0) {
        for (std::size_t i = 0; i < rising; ++i) {
            const auto factor = static_cast<float>(i) / static_cast<float>(rising);
            some[i] = static_cast<std::int16_t>(static_cast<float>(some[i]) * factor);
        }
    }
    m_composer.push(some, m_pending);
    m_converted += count;
}

void LiveReading::send_pending()
{
    if (m_playback.append(m_job, m_rate_version, m_pending, m_pending_events))
        m_pending.clear();
}

void LiveReading::end_stream()
{
    m_composer.finish(m_pending);
    m_pending_events.push_back({ m_composer.frame_of(0), m_next_sequence++, StreamEnded() });
    if (m_job.persist_markup)
        m_state = m_reader.place().state;
    m_ended = true;
}

bool LiveReading::wants_new_rate(const Segment& segment) const
{
    const auto* utterance = std::get_if<Utterance>(&segment.placed.item);
    return utterance && utterance->pronunciation.empty()
        && rate_for(utterance->style, m_playback.rate()) != segment.rate;
}

// Looks for the first word that can still be changed. If it is rendered but not in the ring yet, it
// is looked for again when more is there.
void LiveReading::follow_rate()
{
    const std::uint64_t from = m_playback.changeable_from(m_job);
    const std::uint64_t to = m_playback.appended_to(m_job);
    for (std::size_t i = 0; i < m_in_flight.size(); ++i) {
        const Segment& segment = m_in_flight[i];
        if (!wants_new_rate(segment))
            continue;
        const auto word = std::lower_bound(segment.words.begin(), segment.words.end(), from);
        if (word == segment.words.end())
            continue;
        if (*word <= to && cut_at(i, static_cast<std::size_t>(word - segment.words.begin())))
            m_rate_changed = false;
        return;
    }
    m_rate_changed = false;
}

bool LiveReading::cut_at(std::size_t index, std::size_t word)
{
    const Segment segment = m_in_flight[index];
    const std::uint64_t frame = segment.words[word];
    if (!m_playback.cut(m_job, frame, segment.first_sequence))
        return false;
    std::deque<Placed> again;
    again.push_back(
        { rest_of(std::get<Utterance>(segment.placed.item), word), segment.placed.place });
    for (std::size_t i = index + 1; i < m_in_flight.size(); ++i)
        again.push_back(std::move(m_in_flight[i].placed));
    m_backlog.insert(m_backlog.begin(), std::make_move_iterator(again.begin()),
        std::make_move_iterator(again.end()));
    m_in_flight.resize(index);
    std::erase_if(m_sentences, [&](const Sentence& sentence) {
        return sentence.frame > segment.begin || (word == 0 && sentence.frame == segment.begin);
    });
    m_voice = word == 0 ? segment.voice_before : segment.voice;
    m_composer.restart(frame);
    m_samples.clear();
    m_converted = 0;
    m_pending.clear();
    m_pending_events.clear();
    m_ended = false;
    m_fade_in = static_cast<std::size_t>(usual_rate) * 3 / 1000;
    return true;
}

void LiveReading::move(const Playback::Skip& skip)
{
    const auto after = std::upper_bound(m_sentences.begin(), m_sentences.end(), skip.frame,
        [](std::uint64_t frame, const Sentence& sentence) { return frame < sentence.frame; });
    const std::ptrdiff_t current = std::max<std::ptrdiff_t>(after - m_sentences.begin() - 1, 0);
    for (const Segment& segment : m_in_flight) {
        if (segment.begin <= skip.frame)
            m_voice = segment.voice;
    }
    m_in_flight.clear();
    m_backlog.clear();
    m_samples.clear();
    m_converted = m_fade_in = 0;
    m_pending.clear();
    m_pending_events.clear();
    m_ended = false;
    m_composer.restart(skip.frame);
    read_on_to(std::max<std::ptrdiff_t>(current + skip.count, 0), skip.frame);
}

// Makes the sentence of that number the next to be spoken: from memory if it was begun before, else
// by reading on without a sound. Past the last one the reader is left at the end of the text.
void LiveReading::read_on_to(std::ptrdiff_t sentence, std::uint64_t frame)
{
    const auto known = static_cast<std::ptrdiff_t>(m_sentences.size());
    if (sentence < known) {
        const ReadingPlace place = m_sentences[static_cast<std::size_t>(sentence)].place;
        m_sentences.resize(static_cast<std::size_t>(sentence));
        m_reader = TextReader(m_job.text, m_job.reading, m_voices, place);
        return;
    }
    const ReadingPlace start = known > 0 ? m_sentences.back().place : m_start;
    if (known > 0)
        m_sentences.pop_back();
    for (Sentence& begun : m_sentences)
        begun.frame = std::min(begun.frame, frame);
    m_reader = TextReader(m_job.text, m_job.reading, m_voices, start);
    while (!m_job.cancelled) {
        ReadingPlace place = m_reader.place();
        std::optional<SpeechItem> item = m_reader.next();
        if (!item)
            return;
        const auto* utterance = std::get_if<Utterance>(&*item);
        if (!utterance || !utterance->sentence)
            continue;
        if (static_cast<std::ptrdiff_t>(m_sentences.size()) == sentence) {
            m_backlog.push_back({ std::move(*item), std::move(place) });
            return;
        }
        m_sentences.push_back({ std::move(place), frame });
    }
}

void LiveReading::forget_heard()
{
    const std::uint64_t played = m_playback.changeable_from(m_job);
    while (m_in_flight.size() > 1 && m_in_flight[1].begin < played)
        m_in_flight.pop_front();
}

} // namespace tessavox::voice
