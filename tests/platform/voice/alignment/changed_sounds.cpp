#include "changed_sounds.h"

#include "platform/voice/engines/time_stretch.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace tessavox::voice {

namespace {

using Samples = std::vector<std::int16_t>;

std::ptrdiff_t begin_of(const Rendering& spoken, std::size_t word)
{
    return static_cast<std::ptrdiff_t>(
        word < spoken.words.size() ? spoken.words[word].frame : spoken.samples.size());
}

void move_words(Rendering& spoken, std::size_t first, std::ptrdiff_t frames)
{
    for (std::size_t word = first; word < spoken.words.size(); ++word)
        spoken.words[word].frame += static_cast<std::uint64_t>(frames);
}

void insert_silence(Rendering& spoken, std::size_t word)
{
    const auto frames = spoken.sample_rate / 2;
    spoken.samples.insert(spoken.samples.begin() + begin_of(spoken, word),
        static_cast<std::size_t>(frames), std::int16_t{ 0 });
    for (PhoneMark& phone : spoken.phones)
        phone.frame
            += phone.frame >= spoken.words[word].frame ? static_cast<std::uint64_t>(frames) : 0;
    move_words(spoken, word, frames);
}

std::int16_t clipped(double sample)
{
    return static_cast<std::int16_t>(std::clamp(sample, -32767.0, 32767.0));
}

double loudness(const Samples& samples)
{
    double power = 0;
    for (const std::int16_t sample : samples)
        power += static_cast<double>(sample) * sample;
    return std::sqrt(power / static_cast<double>(samples.size()));
}

} // namespace

void leave_alone(Rendering&) { }

void pause_falsely(Rendering& spoken)
{
    insert_silence(spoken, 2);
    insert_silence(spoken, 5);
}

void swallow_word(Rendering& spoken)
{
    const std::ptrdiff_t begin = begin_of(spoken, changed_word),
                         end = begin_of(spoken, changed_word + 1);
    spoken.samples.erase(spoken.samples.begin() + begin, spoken.samples.begin() + end);
    move_words(spoken, changed_word + 1, begin - end);
}

void say_word_twice(Rendering& spoken)
{
    const std::ptrdiff_t begin = begin_of(spoken, changed_word),
                         end = begin_of(spoken, changed_word + 1);
    const Samples word(spoken.samples.begin() + begin, spoken.samples.begin() + end);
    spoken.samples.insert(spoken.samples.begin() + end, word.begin(), word.end());
    move_words(spoken, changed_word + 1, end - begin);
}

void add_hiss(Rendering& spoken)
{
    constexpr double share = 0.056; // 25 dB below the speech
    std::mt19937 random(1); // the same hiss in every run
    std::normal_distribution<double> hiss(0, share * loudness(spoken.samples));
    for (std::int16_t& sample : spoken.samples)
        sample = clipped(sample + hiss(random));
}

void add_echoes(Rendering& spoken)
{
    constexpr struct {
        double seconds;
        double gain;
    } walls[] = { { 0.013, 0.5 }, { 0.029, 0.4 }, { 0.047, 0.3 }, { 0.083, 0.2 }, { 0.131, 0.1 } };
    const Samples dry = spoken.samples;
    for (std::size_t at = 0; at < dry.size(); ++at) {
        double sum = dry[at];
        for (const auto& wall : walls) {
            const auto delay = static_cast<std::size_t>(wall.seconds * spoken.sample_rate);
            sum += at >= delay ? wall.gain * dry[at - delay] : 0;
        }
        spoken.samples[at] = clipped(sum / 2);
    }
}

void vary_tempo(Rendering& spoken)
{
    Samples samples(spoken.samples.begin(), spoken.samples.begin() + begin_of(spoken, 0));
    for (std::size_t word = 0; word < spoken.words.size(); ++word) {
        Rendering piece;
        piece.sample_rate = spoken.sample_rate;
        piece.samples.assign(spoken.samples.begin() + begin_of(spoken, word),
            spoken.samples.begin() + begin_of(spoken, word + 1));
        stretch(piece, word % 2 == 0 ? 1.5 : 0.75, 1);
        spoken.words[word].frame = samples.size();
        samples.insert(samples.end(), piece.samples.begin(), piece.samples.end());
    }
    spoken.samples = std::move(samples);
}

} // namespace tessavox::voice
