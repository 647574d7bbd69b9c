// What a voice sounds like, learnt from what it has read: it makes the reference speak more and
// more in the voice that it is compared with.
#pragma once

#include "platform/voice/alignment/sound_features.h"

#include <array>
#include <map>
#include <string>
#include <string_view>

namespace tessavox::voice {

/// One voice, in memory only: some 30 kB after a page.
class VoiceLearner {
public:
    /// A third of a phone: its start, its middle or its end.
    struct Place {
        std::string_view phone; // its name
        std::size_t third = 0; // 0 to 2
    };

    /// `reference`, drawn towards what the voice has made of this place so far.
    SliceVector adapted(const Place& place, const SliceVector& reference) const;

    /// Whether an alignment that cost this much is as good as the voice's others, so that what it
    /// taught may be kept. It counts among the others from then on.
    bool trusts(float cost);

    void learn(const Place& place, const SliceVector& heard);

private:
    struct Mean {
        SliceVector sum{};
        float count = 0; // slices
    };
    using Thirds = std::array<Mean, 3>;

    std::map<std::string, Thirds, std::less<>> m_phones;
    float m_usual_cost = 0;
    int m_utterances = 0;
};

} // namespace tessavox::voice
