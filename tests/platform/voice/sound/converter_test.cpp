#include "platform/voice/sound/converter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numbers>

namespace tessavox::voice {
namespace {

using Samples = std::vector<std::int16_t>;
using Bytes = std::vector<std::byte>;

Samples tone(double hertz, int rate, double seconds, double amplitude = 0.9)
{
    Samples samples(static_cast<std::size_t>(rate * seconds));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(std::lrint(amplitude * 32768
            * std::sin(2 * std::numbers::pi * hertz * static_cast<double>(i) / rate)));
    return samples;
}

Bytes convert(
    const Samples& input, int rate, int channels, PcmFormat format, std::size_t chunk = SIZE_MAX)
{
    Bytes out;
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

Samples as_16_bit(const Bytes& bytes)
{
    Samples samples(bytes.size() / 2);
    if (!samples.empty())
        std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    return samples;
}

Bytes as_8_bit(std::initializer_list<int> values)
{
    Bytes bytes;
    for (const int value : values)
        bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

constexpr int output_rates[] = { 8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000 };

TEST(Converter, AToneComesOutPureInPlaceAndAsLoudOrNotAtAll)
{
    for (const int from : { 8000, 22050, 44100, 48000 }) {
        for (const int to : output_rates) {
            for (const double share : { 0.1, 0.85, 1.05 }) { // of what the lower rate can carry
                const double hertz = share * std::min(from, to) / 2;
                if (hertz * 2 > from)
                    continue;
                const Samples heard = as_16_bit(convert(
                    tone(hertz, from, 1), from, 1, { .rate = to, .bits = 16, .channels = 1 }));
                const Samples wanted = tone(hertz, to, 1, share < 1 ? 0.9 : 0);
                int furthest = 0;
                // The ends, where the tone begins and stops, are left out.
                for (std::size_t i = wanted.size() / 20; i < wanted.size() * 19 / 20; ++i)
                    furthest = std::max(furthest, std::abs(heard[i] - wanted[i]));
                // Near the edge of what it lets through, the filter is even to some ten
                // thousandths.
                EXPECT_LE(furthest, share == 0.85 ? 30 : 4)
                    << from << " to " << to << ", " << hertz << " Hz";
            }
        }
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
            const Bytes whole = convert(input, 22050, channels, format);
            for (const std::size_t chunk : { 2, 34, 8194 })
                EXPECT_EQ(convert(input, 22050, channels, format, chunk), whole)
                    << format.type() << ", " << channels << " channels, chunks of " << chunk;
        }
    }
}

TEST(Converter, TheTotalIsTheInputTimesTheRatioRounded)
{
    for (const int from : { 8000, 22050, 44101 }) {
        for (const int to : output_rates) {
            for (const std::size_t frames : { 0, 1, 100, 4096, 50001 }) {
                const Bytes out = convert(
                    Samples(frames), from, 1, { .rate = to, .bits = 8, .channels = 1 }, 4096);
                const double exact = static_cast<double>(frames) * to / from;
                EXPECT_EQ(out.size(), static_cast<std::size_t>(std::floor(exact + 0.5)))
                    << frames << " from " << from << " to " << to;
                EXPECT_EQ(out, Bytes(out.size(), std::byte(128))) << "silence stays silence";
            }
        }
    }
}

TEST(Converter, SamplesOfTheSameRateAreMixedAndRounded)
{
    const Samples input{ 0, 1, -1, 32767, -32768, 12345 };
    EXPECT_EQ(as_16_bit(convert(input, 16000, 1, { 16000, 16, 1 })), input);
    EXPECT_EQ(as_16_bit(convert(input, 16000, 2, { 16000, 16, 2 })), input);
    EXPECT_EQ(as_16_bit(convert({ 5, -7 }, 16000, 1, { 16000, 16, 2 })), (Samples{ 5, 5, -7, -7 }));
    EXPECT_EQ(
        as_16_bit(convert({ 100, 300, -32768, -32768, 32767, 32767 }, 16000, 2, { 16000, 16, 1 })),
        (Samples{ 200, -32768, 32767 }));
    EXPECT_EQ(convert({ 0, 127, 128, -128, -129, 32767, -32768 }, 8000, 1, { 8000, 8, 1 }),
        as_8_bit({ 128, 128, 129, 128, 127, 255, 0 }));
}

Samples applied(Gain& gain, Samples samples)
{
    gain.apply(std::as_writable_bytes(std::span(samples)));
    return samples;
}

TEST(Gain, TheFirstOneTakesEffectAtOnceRoundTheMiddleOfTheFormat)
{
    Gain gain({ .rate = 8000, .bits = 16, .channels = 1 });
    gain.set(0.5F);
    EXPECT_EQ(applied(gain, { 1000, -1000, 32767, -32768 }), (Samples{ 500, -500, 16384, -16384 }));
    for (const auto& [factor, expected] : { std::pair(1.0F, as_8_bit({ 128, 255, 0, 138 })),
             { 0.5F, as_8_bit({ 128, 192, 64, 133 }) },
             { 0.0F, as_8_bit({ 128, 128, 128, 128 }) } }) {
        Gain coarse({ .rate = 8000, .bits = 8, .channels = 1 });
        coarse.set(factor);
        Bytes bytes = as_8_bit({ 128, 255, 0, 138 });
        coarse.apply(bytes);
        EXPECT_EQ(bytes, expected);
    }
}

} // namespace
} // namespace tessavox::voice
