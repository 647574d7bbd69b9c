// What a rate, a pitch or an emphasis of the voice means in the units of the engines.
#pragma once

namespace tessavox::voice {

/// The factor of a rate -10..10: 3^(rate/10). Sound lasts 1/factor as long.
double speed_factor(int rate);

/// The factor of a pitch -10..10: 2^(pitch/24).
double pitch_factor(int pitch);

/// What an emphasis makes of both, where an engine has no other means.
constexpr double emphasis_speed_factor = 0.9;
constexpr double emphasis_pitch_factor = 1.08;

/// The factor on the durations of flite's statistical voices that makes them `speed` times as fast.
double shrunken_duration(double speed);

/// A speed as espeak-ng takes it. At both ends of the way the rest is a stretch of its sound.
struct EspeakSpeed {
    int words_per_minute = 175;
    double stretch = 1; // the sound is made 1/stretch as long
};

/// The measured speed that comes closest to speed_factor(rate); `rate` is clamped to -10..10.
EspeakSpeed espeak_speed(int rate, bool emphasis);

/// espeak-ng's pitch and pitch range, 0..100 with 50 as the normal ones.
struct EspeakPitch {
    int pitch = 50;
    int range = 50;
};

/// The measured setting that moves the whole melody by pitch_factor(pitch).
EspeakPitch espeak_pitch(int pitch, bool emphasis);

} // namespace tessavox::voice
