#include "platform/voice/sound/converter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace tessavox::voice {
namespace {

std::vector<std::int16_t> applied(Gain& gain, std::vector<std::int16_t> samples)
{
    gain.apply(std::as_writable_bytes(std::span(samples)));
    return samples;
}

TEST(Gain, TheFirstGainTakesEffectAtOnce)
{
    Gain gain({ .rate = 8000, .bits = 16, .channels = 1 });
    gain.set(0.5F);
    EXPECT_EQ(applied(gain, { 1000, -1000, 32767, -32768 }),
        (std::vector<std::int16_t>{ 500, -500, 16384, -16384 }));
}

TEST(Gain, AtOneNothingChanges)
{
    Gain gain({ .rate = 8000, .bits = 16, .channels = 1 });
    gain.set(1);
    const std::vector<std::int16_t> samples{ 0, 1, -1, 32767, -32768 };
    EXPECT_EQ(applied(gain, samples), samples);
}

TEST(Gain, GlidesWithoutAStepAndArrives)
{
    Gain gain({ .rate = 48000, .bits = 16, .channels = 2 });
    gain.set(1);
    std::int16_t last = applied(gain, { 30000, 30000 }).back();
    gain.set(0.2F);
    for (int frame = 0; frame < 480; ++frame) { // 10 ms
        const auto now = applied(gain, { 30000, 30000 });
        ASSERT_EQ(now[0], now[1]); // both channels alike
        ASSERT_LE(now[0], last);
        ASSERT_LE(last - now[0], 150) << frame; // 1/240 of the scale, and rounding
        last = now[0];
    }
    EXPECT_EQ(last, 6000);
}

TEST(Gain, BlocksAndSingleFramesComeOutAlike)
{
    const PcmFormat format{ .rate = 8000, .bits = 16, .channels = 1 };
    Gain one(format);
    Gain other(format);
    applied(one, { 1 });
    applied(other, { 1 });
    one.set(0);
    other.set(0);
    const std::vector<std::int16_t> block(100, 20000);
    const auto whole = applied(one, block);
    for (const std::int16_t sample : whole)
        ASSERT_EQ(applied(other, { 20000 }).front(), sample);
    EXPECT_EQ(whole.back(), 0);
}

TEST(Gain, EightBitsTurnAboutTheirMiddle)
{
    Gain gain({ .rate = 8000, .bits = 8, .channels = 1 });
    gain.set(0.5F);
    std::vector<std::byte> samples{ std::byte(128), std::byte(255), std::byte(0), std::byte(138) };
    gain.apply(samples);
    EXPECT_EQ(samples,
        (std::vector<std::byte>{ std::byte(128), std::byte(192), std::byte(64), std::byte(133) }));
    Gain mute({ .rate = 8000, .bits = 8, .channels = 1 });
    mute.set(0);
    mute.apply(samples);
    EXPECT_EQ(samples, std::vector<std::byte>(4, std::byte(128)));
}

} // namespace
} // namespace tessavox::voice
