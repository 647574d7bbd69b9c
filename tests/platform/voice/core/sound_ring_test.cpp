#include "platform/voice/sound_ring.h"

#include <gtest/gtest.h>

#include <cstring>

namespace tessavox::voice {
namespace {

constexpr PcmFormat stereo{ 8000, 16, 2 };
constexpr PcmFormat bytes{ 8000, 8, 1 };

TEST(SoundRing, FadesToRestWhereItIsCut)
{
    // 16 bit: the byte 0x40 twice is 16448. 8 bit: 228 is 100 above the middle.
    for (const auto& [format, loud, rest] :
        { std::tuple(stereo, 0x40, 0), std::tuple(bytes, 228, 128) }) {
        SoundRing ring(format, 100);
        const int align = format.block_align();
        ring.append(std::vector<std::byte>(
            static_cast<std::size_t>(50 * align), static_cast<std::byte>(loud)));
        ring.truncate(51, 16); // has not come yet
        ring.truncate(40, 16);
        EXPECT_EQ(ring.end(), 40U);
        std::vector<std::byte> out;
        ring.take(100, out);
        ASSERT_EQ(out.size(), 40U * static_cast<std::size_t>(align));
        const auto sample = [&, align = static_cast<std::size_t>(align)](std::size_t frame) {
            std::int16_t value = std::to_integer<std::int16_t>(out[frame * align]);
            if (align > 1) // the right channel
                std::memcpy(&value, &out[frame * align + 2], sizeof value);
            return static_cast<int>(value);
        };
        EXPECT_EQ(sample(23), sample(0));
        EXPECT_EQ(sample(39), rest);
        for (std::size_t i = 24; i < 40; ++i)
            EXPECT_LT(sample(i), sample(i - 1)) << i;
    }
}

} // namespace
} // namespace tessavox::voice
