#include "platform/voice/sound/pcm_format.h"

#include "platform/failure.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace tessavox::voice {

namespace {

constexpr int rates[] = { 8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000 };

// Each rate has four numbers: 8 bit mono, 8 bit stereo, 16 bit mono, 16 bit stereo.
constexpr int first_type = 4;
constexpr int types_per_rate = 4;
constexpr int step_of_16_bit = 2;
constexpr int step_of_stereo = 1;

} // namespace

PcmFormat PcmFormat::from_type(int type)
{
    const int place = type - first_type;
    if (place < 0 || place >= types_per_rate * static_cast<int>(std::size(rates)))
        throw Failure("no PCM format has the number " + std::to_string(type));
    return { .rate = rates[place / types_per_rate],
        .bits = place & step_of_16_bit ? 16 : 8,
        .channels = place & step_of_stereo ? 2 : 1 };
}

int PcmFormat::type() const
{
    const auto found = std::find(std::begin(rates), std::end(rates), rate);
    if (found == std::end(rates) || (bits != 8 && bits != 16) || (channels != 1 && channels != 2))
        throw Failure("this PCM format has no number");
    return first_type + types_per_rate * static_cast<int>(found - std::begin(rates))
        + (bits == 16 ? step_of_16_bit : 0) + (channels == 2 ? step_of_stereo : 0);
}

} // namespace tessavox::voice
