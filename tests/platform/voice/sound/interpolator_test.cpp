#include "platform/failure.h"
#include "platform/voice/sound/interpolator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace tessavox::voice {
namespace {

TEST(Interpolator, SuitsClearlyHigherRatesInSimpleRatio)
{
    EXPECT_TRUE(Interpolator::suits(22050, 48000));
    EXPECT_TRUE(Interpolator::suits(22050, 44100));
    EXPECT_TRUE(Interpolator::suits(8000, 48000));
    EXPECT_FALSE(Interpolator::suits(22050, 22050));
    EXPECT_FALSE(Interpolator::suits(22050, 24000)); // the bands are too near
    EXPECT_FALSE(Interpolator::suits(22051, 48000));
    EXPECT_FALSE(Interpolator::suits(0, 48000));
    EXPECT_THROW(Interpolator(48000, 22050), Failure);
}

TEST(Interpolator, EveryProcessorMakesTheSameSound)
{
    std::vector<std::int16_t> noise(20000);
    std::uint32_t state = 1;
    for (std::int16_t& sample : noise) {
        state = state * 1664525 + 1013904223;
        sample = static_cast<std::int16_t>(state >> 16); // full scale: clipping, too
    }
    for (const int from : { 8000, 16000, 22050 }) {
        Interpolator best(from, 48000);
        Interpolator portable(from, 48000, true);
        std::vector<std::int16_t> one;
        std::vector<std::int16_t> other;
        best.push(noise, one);
        best.finish(one);
        portable.push(noise, other);
        portable.finish(other);
        ASSERT_EQ(one.size(), other.size());
        int difference = 0;
        for (std::size_t i = 0; i < one.size(); ++i)
            difference = std::max(difference, std::abs(one[i] - other[i]));
        EXPECT_LE(difference, 1) << from;
    }
}

} // namespace
} // namespace tessavox::voice
