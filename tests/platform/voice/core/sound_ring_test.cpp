#include "platform/voice/sound_ring.h"

#include <gtest/gtest.h>

#include <cstring>

namespace tessavox::voice {
namespace {

constexpr PcmFormat stereo{ 8000, 16, 2 };
constexpr PcmFormat bytes{ 8000, 8, 1 };

std::vector<std::byte> frames(std::size_t count, unsigned char value, int align)
{
    return std::vector<std::byte>(count * static_cast<std::size_t>(align), std::byte{ value });
}

TEST(SoundRing, KeepsFramesInOrderUnderTheirNumbers)
{
    SoundRing ring(stereo, 100);
    std::vector<std::byte> in;
    for (int i = 0; i < 400; ++i)
        in.push_back(static_cast<std::byte>(i & 255));
    std::vector<std::byte> out;
    for (int round = 0; round < 5; ++round) {
        ring.append(in);
        ring.take(round % 2 ? 70 : 90, out);
    }
    EXPECT_EQ(ring.begin(), 410U);
    EXPECT_EQ(ring.end(), 500U);
    ring.take(1000, out);
    ASSERT_EQ(out.size(), 2000U);
    for (std::size_t i = 0; i < out.size(); ++i)
        ASSERT_EQ(out[i], in[i % in.size()]) << i;
}

TEST(SoundRing, IsFullFromItsCapacityOnAndStillTakesMore)
{
    SoundRing ring(bytes, 10);
    ring.append(frames(9, 1, 1));
    EXPECT_FALSE(ring.full());
    ring.append(frames(9, 1, 1));
    EXPECT_TRUE(ring.full());
    EXPECT_EQ(ring.frames(), 18U);
}

TEST(SoundRing, FadesToRestWhereItIsCut)
{
    struct Case {
        PcmFormat format;
        unsigned char loud;
        int rest;
    };
    // 16 bit: the byte 0x40 twice is 16448. 8 bit: 228 is 100 above the middle.
    for (const Case& c : { Case{ stereo, 0x40, 0 }, Case{ bytes, 228, 128 } }) {
        SoundRing ring(c.format, 100);
        const int align = c.format.block_align();
        ring.append(frames(50, c.loud, align));
        ring.truncate(40, 16);
        EXPECT_EQ(ring.end(), 40U);
        std::vector<std::byte> out;
        ring.take(100, out);
        ASSERT_EQ(out.size(), 40U * static_cast<std::size_t>(align));
        const auto sample = [&](std::size_t frame) {
            if (c.format.bits == 8)
                return std::to_integer<int>(out[frame]);
            std::int16_t value = 0;
            std::memcpy(&value, &out[frame * static_cast<std::size_t>(align) + 2], sizeof value);
            return static_cast<int>(value);
        };
        EXPECT_EQ(sample(23), sample(0));
        EXPECT_EQ(sample(39), c.rest);
        for (std::size_t i = 24; i < 40; ++i)
            EXPECT_LT(sample(i), sample(i - 1)) << i;
    }
}

TEST(SoundRing, CannotBeCutWhereItHasNothing)
{
    SoundRing ring(bytes, 100);
    ring.restart(500);
    ring.append(frames(10, 200, 1));
    ring.truncate(499, 3);
    ring.truncate(511, 3);
    EXPECT_EQ(ring.begin(), 500U);
    EXPECT_EQ(ring.end(), 510U);
}

} // namespace
} // namespace tessavox::voice
