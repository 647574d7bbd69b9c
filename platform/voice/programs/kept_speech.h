// What a slow engine has spoken lately, for when it is wanted again at another speed.
#pragma once

#include "platform/voice/utterance.h"

#include <deque>
#include <optional>
#include <string>

namespace tessavox::voice {

/// Some of the renderings made last, at natural rate and pitch.
class KeptSpeech {
public:
    /// The sound of an utterance that was kept, or of which the end was: a change of rate makes a
    /// reading ask for the rest of a sentence. Marks count from its own start.
    std::optional<Rendering> find(const std::string& voice_id, const Utterance& utterance) const;
    void keep(const std::string& voice_id, const Utterance& utterance, const Rendering& rendering);

private:
    struct Kept {
        std::string voice_id;
        Utterance utterance;
        Rendering rendering;
    };
    std::deque<Kept> m_kept; // the oldest first
    double m_seconds = 0;
};

} // namespace tessavox::voice
