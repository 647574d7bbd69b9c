#include "platform/voice/text_source.h"

#include "platform/voice/utterance_events.h"

#include <algorithm>
#include <utility>

namespace tessavox::voice {

namespace {

constexpr int slices_a_second = 20;
constexpr int usual_rate = 22050; // for a silence before the first word

} // namespace

TextSource::TextSource(const VoiceCatalog& catalog, const Playback& playback, const Job& job,
    RenderQueue& engines, Pace pace, std::int32_t interests, MarkupStatePtr& state)
    : m_playback(playback)
    , m_job(job)
    , m_voices(catalog, job)
    , m_pace(pace)
    , m_interests(interests)
    , m_state(state)
    , m_start{ 0, state }
    , m_ahead(m_voices, playback, job, engines, pace, m_start)
    , m_converter(job.format)
    , m_voice(job.voice)
{
}

bool TextSource::next(Piece& piece, const std::function<bool()>& interrupted)
{
    if (m_ended)
        return false;
    if (m_converted < m_samples.size()) {
        m_ahead.order();
        convert_some(piece.sound);
        return true;
    }
    if (std::optional<Spoken> spoken = m_ahead.next(interrupted)) {
        begin(std::move(*spoken), piece);
        convert_some(piece.sound);
        return true;
    }
    if (!m_ahead.at_end())
        return true;
    m_converter.finish(piece.sound);
    if (m_job.persist_markup)
        m_state = m_ahead.place().state;
    m_ended = true;
    return false;
}

void TextSource::begin(Spoken spoken, Piece& piece)
{
    m_samples.clear();
    m_converted = 0;
    MadeSpeech::Segment segment;
    segment.first_sequence = m_next_sequence;
    segment.voice = segment.voice_before = m_voice;
    segment.begin = m_converter.frame_of(0);
    if (const auto* utterance = std::get_if<Utterance>(&spoken.item)) {
        begin_utterance(*utterance, spoken, segment, piece);
    } else if (const auto* silence = std::get_if<Silence>(&spoken.item)) {
        const int rate = m_converter.rate_or(usual_rate);
        m_converter.begin(rate, 1, piece.sound);
        m_samples.assign(static_cast<std::size_t>(rate) * silence->milliseconds / 1000, 0);
    } else {
        piece.events.push_back({ segment.begin, m_next_sequence++,
            BookmarkReached{ std::get<Bookmark>(spoken.item).name } });
    }
    if (m_pace == Pace::Fast)
        return;
    segment.placed = { std::move(spoken.item), std::move(spoken.place) };
    m_made.add(std::move(segment));
}

// An utterance that no engine can speak is passed over.
void TextSource::begin_utterance(
    const Utterance& utterance, Spoken& spoken, MadeSpeech::Segment& segment, Piece& piece)
{
    Rendering& rendering = spoken.rendering;
    segment.rate = spoken.rate;
    segment.voice = spoken.voice;
    if (rendering.sample_rate <= 0)
        return;
    apply_levels(utterance, rendering);
    m_converter.begin(rendering.sample_rate, 1, piece.sound);
    segment.begin = m_converter.frame_of(0);
    const auto frame_of = [this](std::uint64_t sample) { return m_converter.frame_of(sample); };
    const int changed = spoken.voice != std::exchange(m_voice, spoken.voice) ? spoken.voice : -1;
    piece.events = events_of(utterance, rendering, changed, m_interests, frame_of, m_next_sequence);
    for (const WordMark& mark : rendering.words)
        segment.words.push_back(frame_of(mark.frame));
    m_samples = std::move(rendering.samples);
}

void TextSource::convert_some(std::vector<std::byte>& sound)
{
    const std::size_t left = m_samples.size() - m_converted;
    if (left == 0)
        return;
    const int rate = m_converter.rate_or(usual_rate);
    const auto slice = static_cast<std::size_t>(std::max(rate / slices_a_second, 1));
    const std::size_t count = m_pace == Pace::Fast ? left : std::min(left, slice);
    const std::span<std::int16_t> some(m_samples.data() + m_converted, count);
    const std::size_t rising = std::min(std::exchange(m_fade_in, 0), count);
    for (std::size_t i = 0; i < rising; ++i) {
        const auto factor = static_cast<float>(i) / static_cast<float>(rising);
        some[i] = static_cast<std::int16_t>(static_cast<float>(some[i]) * factor);
    }
    m_converter.push(some, sound);
    m_converted += count;
}

// What was converted beyond is void.
void TextSource::go_on_from(std::uint64_t frame)
{
    m_converter.restart(frame);
    m_samples.clear();
    m_converted = m_fade_in = 0;
    m_ended = false;
}

std::optional<SoundSource::Cut> TextSource::follow_rate(std::uint64_t frame)
{
    m_ahead.follow_rate();
    for (std::size_t i = 0; i < m_made.segments().size(); ++i) {
        const MadeSpeech::Segment& segment = m_made.segments()[i];
        const auto* utterance = std::get_if<Utterance>(&segment.placed.item);
        if (!utterance || !utterance->pronunciation.empty()
            || rate_for(utterance->style, m_playback.rate()) == segment.rate)
            continue;
        const auto word = std::lower_bound(segment.words.begin(), segment.words.end(), frame);
        if (word != segment.words.end())
            return Cut{ *word, segment.first_sequence, i,
                static_cast<std::size_t>(word - segment.words.begin()) };
    }
    return std::nullopt;
}

void TextSource::take_back(const Cut& cut)
{
    const MadeSpeech::Segment& segment = m_made.segments()[cut.segment];
    m_voice = cut.word == 0 ? segment.voice_before : segment.voice;
    m_ahead.put_back(m_made.take_back(cut.segment, cut.word));
    go_on_from(cut.frame);
    m_fade_in = static_cast<std::size_t>(usual_rate) * 3 / 1000;
}

void TextSource::skip(int sentences, std::uint64_t frame)
{
    const std::ptrdiff_t wanted = m_made.sentence_at(frame) + sentences;
    m_voice = m_made.voice_at(frame).value_or(m_voice);
    m_made.cut(frame);
    go_on_from(frame);
    read_on_to(static_cast<std::size_t>(std::max<std::ptrdiff_t>(wanted, 0)), frame);
}

// Makes the sentence of that number the next to be spoken: from memory if it was begun before, else
// by reading on without a sound. Past the last one the end of the text stands as a sentence.
void TextSource::read_on_to(std::size_t sentence, std::uint64_t frame)
{
    if (sentence < m_made.sentences())
        m_made.forget_sentences_after(sentence + 1);
    TextReader reader(
        m_job.text, m_job.reading, m_voices, m_made.last_sentence().value_or(m_start));
    while (m_made.sentences() <= sentence && !m_job.cancelled) {
        const ReadingPlace place = reader.place();
        const std::optional<SpeechItem> item = reader.next();
        const auto* utterance = item ? std::get_if<Utterance>(&*item) : nullptr;
        if (!item || (utterance && utterance->sentence))
            m_made.begin_sentence(place, frame);
        if (!item)
            break;
    }
    const std::optional<ReadingPlace> place = m_made.last_sentence();
    m_ahead.go_to(place.value_or(m_start));
    if (place)
        m_made.begin_sentence(*place, frame);
}

} // namespace tessavox::voice
