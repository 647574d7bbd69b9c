#include "platform/voice/alignment/voice_learner.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

// Anything between 0.7 and 0.9 is within 1 ms of the best.
constexpr float learnt_share = 0.7F;
constexpr float least_slices = 8; // before a mean is believed
constexpr float most_slices = 400; // then the older half of them weighs half

constexpr int trusted_utterances = 5; // the first ones, whatever they cost
constexpr float trusted_excess = 1.25F; // over the usual cost
constexpr float usual_cost_share = 0.1F; // of the newest utterance in the usual cost

} // namespace

SliceVector VoiceLearner::adapted(const Place& place, const SliceVector& reference) const
{
    const auto phone = m_phones.find(place.phone);
    if (phone == m_phones.end() || phone->second[place.third].count < least_slices)
        return reference;
    const Mean& mean = phone->second[place.third];
    SliceVector vector{};
    for (std::size_t at = 0; at < vector.size(); ++at)
        vector[at] = (1 - learnt_share) * reference[at] + learnt_share * mean.sum[at] / mean.count;
    return vector;
}

bool VoiceLearner::trusts(float cost)
{
    const bool trusted = m_utterances < trusted_utterances || cost < trusted_excess * m_usual_cost;
    ++m_utterances;
    const float share = std::max(usual_cost_share, 1.0F / static_cast<float>(m_utterances));
    m_usual_cost += share * (cost - m_usual_cost);
    return trusted;
}

void VoiceLearner::learn(const Place& place, const SliceVector& heard)
{
    auto phone = m_phones.find(place.phone);
    if (phone == m_phones.end())
        phone = m_phones.try_emplace(std::string(place.phone)).first;
    Mean& mean = phone->second[place.third];
    if (mean.count >= most_slices) {
        mean.count /= 2;
        for (float& value : mean.sum)
            value /= 2;
    }
    mean.count += 1;
    for (std::size_t at = 0; at < heard.size(); ++at)
        mean.sum[at] += heard[at];
}

} // namespace tessavox::voice
