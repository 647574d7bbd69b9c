#include "platform/voice/engines/prosody.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessavox::voice {

namespace {

// espeak-ng's words a minute aren't proportional to its speed, because pauses and consonants
// shrink less than vowels. These were chosen by measuring English and German prose.
constexpr std::array words_per_minute{ 80, 80, 80, 80, 91, 102, 113, 126, 141, 157, //
    175, 195, 217, 244, 273, 308, 345, 389, 438, 480, 535 };

// How fast 80 words a minute are against 175.
constexpr double factor_of_slowest = 0.477;
constexpr int slowest_words_per_minute = 80;

// Median fundamental of a voiced English text against the one at pitch 50, with the range scaled
// along.
constexpr std::array pitches{ 23, 25, 28, 31, 33, 36, 39, 42, 45, 47, //
    50, 52, 55, 58, 60, 63, 66, 68, 70, 73, 76 };
constexpr int normal_range = 50;

// An emphasised word is said slower and with a livelier melody.
constexpr double emphasis_slowdown = 0.9;
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

EspeakSpeed espeak_speed(int rate, bool emphasis)
{
    EspeakSpeed speed{ words_per_minute[static_cast<std::size_t>(index_of(rate))], 1 };
    if (speed.words_per_minute == slowest_words_per_minute)
        speed.stretch = speed_factor(rate) / factor_of_slowest;
    if (!emphasis)
        return speed;
    if (speed.words_per_minute * emphasis_slowdown >= slowest_words_per_minute)
        speed.words_per_minute
            = static_cast<int>(std::lround(speed.words_per_minute * emphasis_slowdown));
    else
        speed.stretch *= emphasis_slowdown;
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
