// The voice and the rate that an utterance of a job is spoken with.
#pragma once

#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/job.h"

#include <algorithm>

namespace tessavox::voice {

/// For the text reader, to which the voice that Speak began with is -1.
class JobVoices : public VoiceChooser {
public:
    JobVoices(const VoiceCatalog& catalog, const Job& job)
        : m_catalog(catalog)
        , m_own(job.voice)
    {
    }
    std::optional<int> choose(
        std::string_view required, std::string_view optional, int current) const override
    {
        return m_catalog.choose(required, optional, current < 0 ? m_own : current);
    }
    int voice_for(const SpeechStyle& style) const { return style.voice < 0 ? m_own : style.voice; }

private:
    const VoiceCatalog& m_catalog;
    int m_own;
};

inline int rate_for(const SpeechStyle& style, int voice_rate)
{
    return std::clamp(voice_rate + style.rate, -10, 10);
}

} // namespace tessavox::voice
