#include "platform/voice/file_reading.h"

#include "platform/failure.h"
#include "platform/voice/engines/render_farm.h"
#include "platform/voice/file_stream.h"
#include "platform/voice/utterance_events.h"

#include <algorithm>
#include <utility>

namespace tessavox::voice {

namespace {

// Below this the helpers would have started just when the text ends.
constexpr std::size_t worth_helpers_units = 4'000;
constexpr std::size_t most_items_ahead = 256;
constexpr int usual_rate = 22050; // for a silence before the first word

// Without a program to start, a farm renders on the thread that takes from it.
RenderHelpers helpers_for(const Job& job, const RenderHelpers& helpers)
{
    return job.text.size() > worth_helpers_units ? helpers : RenderHelpers();
}

} // namespace

FileReading::FileReading(const VoiceCatalog& catalog, Playback& playback, EventQueue& events,
    const Job& job, MarkupStatePtr& state)
    : m_catalog(catalog)
    , m_playback(playback)
    , m_events(events)
    , m_job(job)
    , m_state(state)
    , m_voices(catalog, job)
    , m_reader(job.text, job.reading, m_voices, { 0, state })
    , m_composer(job.format)
    , m_voice(job.voice)
{
}

FileReading::~FileReading() = default;

void FileReading::run(const RenderHelpers& helpers)
{
    m_happened.push_back({ 0, m_next_sequence++, StreamStarted() });
    m_events.append(m_job, std::exchange(m_happened, {}));
    const RenderHelpers used = helpers_for(m_job, helpers);
    m_farm = std::make_unique<RenderFarm>(m_catalog, used.path, used.count);
    bool taken = true;
    while (taken && !m_job.cancelled && take_next())
        taken = send();
    m_composer.finish(m_sound);
    send();
    m_happened.push_back({ m_composer.frame_of(0), m_next_sequence++, StreamEnded() });
    m_events.append(m_job, std::exchange(m_happened, {}));
    m_playback.finish(m_job);
}

// Markup is read ahead of the sound, so its end state is known before the last word is written.
void FileReading::submit_ahead()
{
    while (!m_all_read && m_farm->wants_more() && m_ahead.size() < most_items_ahead) {
        std::optional<SpeechItem> item = m_reader.next();
        if (!item) {
            m_all_read = true;
            if (m_job.persist_markup && !m_job.cancelled)
                m_state = m_reader.place().state;
            return;
        }
        if (auto* utterance = std::get_if<Utterance>(&*item)) {
            const int voice = m_voices.voice_for(utterance->style);
            const int rate = rate_for(utterance->style, m_playback.rate());
            m_farm->submit(voice, rate, std::exchange(*utterance, {}));
        }
        m_ahead.push_back(std::move(*item));
    }
}

bool FileReading::take_next()
{
    submit_ahead();
    if (m_ahead.empty())
        return false;
    const SpeechItem item = std::move(m_ahead.front());
    m_ahead.pop_front();
    if (const auto* silence = std::get_if<Silence>(&item)) {
        write_silence(*silence);
    } else if (const auto* bookmark = std::get_if<Bookmark>(&item)) {
        write_bookmark(*bookmark);
    } else {
        RenderFarm::Result result = m_farm->take(m_job.cancelled);
        if (!m_job.cancelled)
            write_utterance(result.utterance, std::move(result.rendering));
    }
    return true;
}

void FileReading::write_utterance(const Utterance& utterance, Rendering rendering)
{
    if (rendering.sample_rate <= 0)
        return;
    apply_levels(utterance, rendering);
    m_composer.begin(rendering.sample_rate, 1, m_sound);
    const int voice = m_voices.voice_for(utterance.style);
    const int changed = voice != std::exchange(m_voice, voice) ? voice : -1;
    std::vector<StreamEvent> events = events_of(
        utterance, rendering, changed,
        [this](std::uint64_t sample) { return m_composer.frame_of(sample); }, m_next_sequence);
    std::move(events.begin(), events.end(), std::back_inserter(m_happened));
    m_composer.push(rendering.samples, m_sound);
    if (!utterance.tokens.empty()) {
        const Token& last = utterance.tokens.back();
        m_spoken_units = last.source_begin + last.source_length;
    }
}

void FileReading::write_silence(const Silence& silence)
{
    const int rate = m_composer.rate_or(usual_rate);
    m_composer.begin(rate, 1, m_sound);
    const std::vector<std::int16_t> samples(
        static_cast<std::size_t>(rate) * silence.milliseconds / 1000);
    m_composer.push(samples, m_sound);
}

void FileReading::write_bookmark(const Bookmark& bookmark)
{
    m_happened.push_back(
        { m_composer.frame_of(0), m_next_sequence++, BookmarkReached{ bookmark.name } });
}

bool FileReading::send()
{
    if (!m_happened.empty())
        m_events.append(m_job, std::exchange(m_happened, {}));
    if (!m_sound.empty() && !m_job.file->write(m_sound))
        return false;
    m_sound.clear();
    m_playback.set_spoken_units(m_spoken_units);
    return true;
}

} // namespace tessavox::voice
