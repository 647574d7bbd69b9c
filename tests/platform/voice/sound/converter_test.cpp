#include "platform/failure.h"
#include "platform/voice/sound/converter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numbers>

namespace tessavox::voice {
namespace {

using Samples = std::vector<std::int16_t>;

constexpr double full_scale = 32768;

Samples tone(double hertz, int rate, double seconds, double amplitude = 0.9)
{
    Samples samples(static_cast<std::size_t>(rate * seconds));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(std::lrint(amplitude * full_scale
            * std::sin(2 * std::numbers::pi * hertz * static_cast<double>(i) / rate)));
    return samples;
}

std::vector<std::byte> convert(
    const Samples& input, int rate, int channels, PcmFormat format, std::size_t chunk = SIZE_MAX)
{
    std::vector<std::byte> out;
    Converter converter(format);
    converter.begin(rate, channels, out);
    for (std::span<const std::int16_t> rest(input); !rest.empty();) {
        const auto piece = rest.first(std::min(rest.size(), chunk));
        converter.push(piece, out);
        rest = rest.subspan(piece.size());
    }
    converter.finish(out);
    return out;
}

Samples as_16_bit(const std::vector<std::byte>& bytes)
{
    Samples samples(bytes.size() / 2);
    if (!samples.empty())
        std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    return samples;
}

// The part of the samples that is a sine of one frequency, and the power of all that is not. The
// ends, where the tone begins and stops, are left out.
struct Fit {
    double sine = 0;
    double cosine = 0;
    double rest_decibels = 0; // below the tone
};

Fit fit(const Samples& samples, double hertz, int rate)
{
    const std::size_t margin = static_cast<std::size_t>(rate) / 20;
    double ss = 0;
    double cc = 0;
    double sc = 0;
    double xs = 0;
    double xc = 0;
    double power = 0;
    for (std::size_t i = margin; i + margin < samples.size(); ++i) {
        const double angle = 2 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
        const double s = std::sin(angle);
        const double c = std::cos(angle);
        const double x = samples[i] / full_scale;
        ss += s * s;
        cc += c * c;
        sc += s * c;
        xs += x * s;
        xc += x * c;
        power += x * x;
    }
    const double determinant = ss * cc - sc * sc;
    Fit result;
    result.sine = (xs * cc - xc * sc) / determinant;
    result.cosine = (xc * ss - xs * sc) / determinant;
    const double tone_power = result.sine * xs + result.cosine * xc;
    result.rest_decibels = 10 * std::log10(tone_power / std::max(power - tone_power, 1e-12));
    return result;
}

constexpr int output_rates[] = { 8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000 };
constexpr int input_rates[] = { 8000, 16000, 22050, 44100, 48000 };

TEST(Converter, AToneComesOutPureInPlaceAndAsLoudAtEveryRate)
{
    for (const int from : input_rates) {
        for (const int to : output_rates) {
            const double highest = std::min(from, to) / 2.0;
            for (const double hertz : { 0.1 * highest, 0.85 * highest }) {
                const auto out = as_16_bit(convert(
                    tone(hertz, from, 1), from, 1, { .rate = to, .bits = 16, .channels = 1 }));
                const Fit found = fit(out, hertz, to);
                SCOPED_TRACE(testing::Message() << from << " to " << to << ", " << hertz << " Hz");
                EXPECT_GT(found.rest_decibels, 90);
                EXPECT_NEAR(found.sine, 0.9, 0.002);
                EXPECT_NEAR(found.cosine, 0, 0.002);
            }
        }
    }
}

TEST(Converter, WhatALowerRateCanNotCarryIsGone)
{
    for (const int to : { 8000, 11025, 12000, 16000 }) {
        const double hertz = to / 2.0 * 1.05;
        const auto out = as_16_bit(
            convert(tone(hertz, 22050, 1), 22050, 1, { .rate = to, .bits = 16, .channels = 1 }));
        double power = 0;
        const std::size_t margin = static_cast<std::size_t>(to) / 20;
        for (std::size_t i = margin; i + margin < out.size(); ++i)
            power += std::pow(out[i] / full_scale, 2);
        power /= static_cast<double>(out.size() - 2 * margin);
        EXPECT_LT(10 * std::log10(power + 1e-12), -90) << to;
    }
}

TEST(Converter, ChunksLeaveNoSeam)
{
    Samples input = tone(440, 22050, 0.4);
    const Samples other = tone(3000, 22050, 0.3, 0.3);
    input.insert(input.end(), other.begin(), other.end());
    input.resize(input.size() / 2 * 2);
    for (const PcmFormat format : { PcmFormat{ 48000, 16, 2 }, PcmFormat{ 8000, 8, 1 },
             PcmFormat{ 44100, 16, 1 }, PcmFormat{ 22050, 16, 2 } }) {
        for (const int channels : { 1, 2 }) {
            const auto whole = convert(input, 22050, channels, format);
            for (const std::size_t chunk : { 2, 34, 1000, 8194 })
                EXPECT_EQ(convert(input, 22050, channels, format, chunk), whole)
                    << format.type() << ", " << channels << " channels, chunks of " << chunk;
        }
    }
}

TEST(Converter, TheTotalIsTheInputTimesTheRatioRounded)
{
    for (const int from : { 8000, 16000, 22050, 44101 }) {
        for (const int to : output_rates) {
            for (const std::size_t frames : { 0, 1, 2, 100, 4096, 12345, 50001 }) {
                const auto out = convert(
                    Samples(frames), from, 1, { .rate = to, .bits = 8, .channels = 1 }, 4096);
                const auto exact = static_cast<double>(frames) * to / from;
                EXPECT_EQ(out.size(), static_cast<std::size_t>(std::floor(exact + 0.5)))
                    << frames << " from " << from << " to " << to;
            }
        }
    }
}

TEST(Converter, SamplesOfTheSameFormatPassUnchanged)
{
    const Samples input{ 0, 1, -1, 32767, -32768, 12345 };
    EXPECT_EQ(as_16_bit(convert(input, 16000, 1, { 16000, 16, 1 })), input);
    EXPECT_EQ(as_16_bit(convert(input, 16000, 2, { 16000, 16, 2 })), input);
    EXPECT_EQ(as_16_bit(convert({ 5, -7 }, 16000, 1, { 16000, 16, 2 })), (Samples{ 5, 5, -7, -7 }));
    EXPECT_EQ(
        as_16_bit(convert({ 100, 300, -32768, -32768, 32767, 32767 }, 16000, 2, { 16000, 16, 1 })),
        (Samples{ 200, -32768, 32767 }));
}

TEST(Converter, EightBitsAreRoundedAndSilenceStaysSilence)
{
    const auto out = convert({ 0, 127, 128, -128, -129, 32767, -32768 }, 8000, 1,
        { .rate = 8000, .bits = 8, .channels = 1 });
    const std::vector<std::byte> expected{ std::byte(128), std::byte(128), std::byte(129),
        std::byte(128), std::byte(127), std::byte(255), std::byte(0) };
    EXPECT_EQ(out, expected);
    const auto silence
        = convert(Samples(22050), 22050, 1, { .rate = 8000, .bits = 8, .channels = 2 });
    EXPECT_EQ(silence, std::vector<std::byte>(16000, std::byte(0x80)));
}

TEST(Converter, ASquareAtFullScaleIsClippedAndNeverWrapsRound)
{
    Samples square(22050);
    for (std::size_t i = 0; i < square.size(); ++i)
        square[i] = i / 441 % 2 == 0 ? INT16_MAX : INT16_MIN;
    const auto out
        = as_16_bit(convert(square, 22050, 1, { .rate = 44100, .bits = 16, .channels = 1 }));
    for (std::size_t i = 0; i < out.size(); ++i) {
        const std::size_t phase = i % 882;
        if (phase < 4 || phase > 878)
            continue; // the edges
        ASSERT_EQ(out[i] > 0, i / 882 % 2 == 0) << i;
    }
}

TEST(Converter, ImpossibleFormatsAreRefused)
{
    EXPECT_THROW(convert({}, 0, 1, {}), Failure);
    EXPECT_THROW(convert({}, -8000, 1, {}), Failure);
    EXPECT_THROW(convert({}, 8000, 3, {}), Failure);
    EXPECT_THROW(convert({}, 8000, 1, { .rate = 0 }), Failure);
    EXPECT_THROW(convert({}, 8000, 1, { .rate = 8000, .bits = 24, .channels = 1 }), Failure);
}

} // namespace
} // namespace tessavox::voice
