#include "platform/voice/sound_ring.h"

#include <gtest/gtest.h>

#include <cstring>

namespace tessavox::voice {
namespace {

TEST(SoundRing, FadesToRestWhereItIsCut)
{
    constexpr std::size_t align = 4;
    SoundRing ring(PcmFormat{ 8000, 16, 2 }, 100);
    ring.append(std::vector<std::byte>(50 * align, std::byte{ 0x40 }));
    ring.truncate(51, 16); // has not come yet
    ring.truncate(40, 16);
    EXPECT_EQ(ring.end(), 40U);
    std::vector<std::byte> out;
    ring.take(100, out);
    ASSERT_EQ(out.size(), 40 * align);
    std::int16_t samples[80];
    std::memcpy(samples, out.data(), sizeof samples);
    EXPECT_EQ(samples[46], samples[0]);
    EXPECT_EQ(samples[79], 0);
    for (std::size_t right = 49; right < 80; right += 2)
        EXPECT_LT(samples[right], samples[right - 2]) << right;
}

} // namespace
} // namespace tessavox::voice
