// A wave file that the voice plays.
#pragma once

#include "platform/voice/job.h"
#include "platform/voice/sound/converter.h"
#include "platform/voice/sound_source.h"

namespace tessavox::voice {

class WaveSource : public SoundSource {
public:
    /// `interests`: whether the levels are measured.
    WaveSource(const Job& job, std::int32_t interests);
    bool next(Piece& piece, const std::function<bool()>& interrupted) override;

private:
    WaveReader& m_wave;
    const bool m_measures;
    Converter m_converter;
    std::vector<std::int16_t> m_samples;
    std::uint64_t m_next_sequence = 0;
};

} // namespace tessavox::voice
