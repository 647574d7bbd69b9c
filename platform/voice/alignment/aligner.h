// Gives the sound of any engine exact word marks, by holding it against a reference that says the
// same and has them.
#pragma once

#include "platform/voice/alignment/mark_mapping.h"
#include "platform/voice/alignment/reference_speech.h"
#include "platform/voice/alignment/sound_features.h"
#include "platform/voice/alignment/voice_learner.h"

#include <memory>
#include <span>

namespace tessavox::voice {

/// Aligns what one voice reads. It learns the voice as it goes, so each has its own, and serves one
/// thread at a time.
class Aligner {
public:
    /// The reference's words and phones where they are in `target`, 16-bit mono at `sample_rate`
    /// Hz. Whatever the sounds are, each word gets a mark. Costs about 0.2 % of the sound's length.
    /// @throws Failure if a sample rate is none that sound has.
    AlignedMarks align(
        std::span<const std::int16_t> target, int sample_rate, const ReferenceSpeech& reference);

private:
    std::unique_ptr<FeatureExtractor> m_target_extractor;
    std::unique_ptr<FeatureExtractor> m_reference_extractor;
    VoiceLearner m_voice;
};

} // namespace tessavox::voice
