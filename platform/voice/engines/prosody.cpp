#include "platform/voice/engines/prosody.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessavox::voice {

namespace {

// espeak-ng's words a minute aren't proportional to its speed. These were chosen by measuring prose
// of five languages for the rates from -6 to 3.
constexpr int slowest_own_rate = -6;
constexpr int fastest_own_rate = 3;
constexpr std::array words_per_minute{ 93, 103, 115, 127, 142, 157, 175, 195, 217, 242 };

// Beyond these espeak-ng's languages drift apart, by up to a fifth of the speed, and below 80 it
// stands still. So the rest of the way is a stretch of the sound.
struct EndOfRange {
    int words_per_minute;
    double factor; // against 175 words a minute
};
constexpr EndOfRange slowest{ 90, 0.500 };
constexpr EndOfRange fastest{ 250, 1.436 };

// Median fundamental of a voiced English text against the one at pitch 50, with the range scaled
// along.
constexpr std::array pitches{ 23, 25, 28, 31, 33, 36, 39, 42, 45, 47, //
    50, 52, 55, 58, 60, 63, 66, 68, 70, 73, 76 };
constexpr int normal_range = 50;

// Flite's statistical voices sound in whole frames, which can't shrink in proportion. This much of
// the normal duration is lost so at three times the speed, measured with three of them.
constexpr double lost_at_thrice = 0.0134;

// An emphasised word has a livelier melody.
constexpr int emphasis_pitch = 6;
constexpr int emphasis_range = 30;

int index_of(int step)
{
    return std::clamp(step, -10, 10) + 10;
}

} // namespace

double speed_factor(int rate)
{
    return std::pow(3.0, std::clamp(rate, -10, 10) / 10.0);
}

double pitch_factor(int pitch)
{
    return std::exp2(std::clamp(pitch, -10, 10) / 24.0);
}

double shrunken_duration(double speed)
{
    const double wanted = 1 / speed;
    return wanted < 1 ? wanted - lost_at_thrice * std::pow((1 - wanted) * 1.5, 3) : wanted;
}

EspeakSpeed espeak_speed(int rate, bool emphasis)
{
    EspeakSpeed speed;
    if (rate < slowest_own_rate)
        speed = { slowest.words_per_minute, speed_factor(rate) / slowest.factor };
    else if (rate > fastest_own_rate)
        speed = { fastest.words_per_minute, speed_factor(rate) / fastest.factor };
    else
        speed.words_per_minute
            = words_per_minute[static_cast<std::size_t>(rate - slowest_own_rate)];
    if (!emphasis)
        return speed;
    if (speed.words_per_minute * emphasis_speed_factor >= slowest.words_per_minute)
        speed.words_per_minute
            = static_cast<int>(std::lround(speed.words_per_minute * emphasis_speed_factor));
    else
        speed.stretch *= emphasis_speed_factor;
    return speed;
}

EspeakPitch espeak_pitch(int pitch, bool emphasis)
{
    EspeakPitch result;
    result.pitch = pitches[static_cast<std::size_t>(index_of(pitch))];
    result.range = static_cast<int>(std::lround(normal_range * pitch_factor(pitch)));
    if (emphasis) {
        result.pitch += emphasis_pitch;
        result.range += emphasis_range;
    }
    return result;
}

} // namespace tessavox::voice
