#include "platform/voice/wave_source.h"

#include "platform/speech_voice.h"
#include "platform/voice/utterance_events.h"

#include <algorithm>

namespace tessavox::voice {

WaveSource::WaveSource(const Job& job, std::int32_t interests)
    : m_wave(*job.wave)
    , m_measures((interests & SVEAudioLevel) != 0)
    , m_converter(job.format)
    , m_samples(static_cast<std::size_t>(std::max(m_wave.rate() / 20, 1))
          * static_cast<std::size_t>(m_wave.channels()))
{
    std::vector<std::byte> nothing;
    m_converter.begin(m_wave.rate(), m_wave.channels(), nothing);
}

bool WaveSource::next(Piece& piece, const std::function<bool()>& interrupted)
{
    if (interrupted())
        return true;
    const std::size_t frames = m_wave.read(m_samples);
    if (frames == 0) {
        m_converter.finish(piece.sound);
        return false;
    }
    const auto read
        = std::span(m_samples).first(frames * static_cast<std::size_t>(m_wave.channels()));
    if (m_measures)
        append_levels(
            read, m_wave.rate(), m_wave.channels(),
            [this](std::uint64_t sample) { return m_converter.frame_of(sample); }, m_next_sequence,
            piece.events);
    m_converter.push(read, piece.sound);
    return true;
}

} // namespace tessavox::voice
