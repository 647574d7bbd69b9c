#include "platform/voice/alignment/voice_learner.h"

#include <gtest/gtest.h>

namespace tessavox::voice {
namespace {

SliceVector level(float value)
{
    SliceVector vector{};
    vector.fill(value);
    return vector;
}

TEST(VoiceLearner, BelievesAPlaceOfAPhoneOnceItWasHeardOftenAndForgetsHowItWas)
{
    VoiceLearner voice;
    const auto learn = [&](float value, int times) {
        for (int time = 0; time < times; ++time)
            voice.learn({ "a", 1 }, level(value));
        return voice.adapted({ "a", 1 }, level(0))[0];
    };
    EXPECT_EQ(learn(10, 7), 0);
    EXPECT_FLOAT_EQ(learn(10, 1), 7);
    EXPECT_EQ(voice.adapted({ "a", 2 }, level(0)), level(0));
    EXPECT_EQ(voice.adapted({ "b", 1 }, level(0)), level(0));
    EXPECT_FLOAT_EQ(learn(10, 792), 7);
    EXPECT_LT(learn(0, 1000), 1.5F) << "2 if all weighed alike";
}

TEST(VoiceLearner, TrustsTheFirstUtterancesAndThenThoseThatAreNoDearerThanUsual)
{
    VoiceLearner voice;
    for (const float cost : { 3.0F, 9.0F, 1.0F, 3.0F, 4.0F })
        EXPECT_TRUE(voice.trusts(cost)) << cost; // 4 on average
    EXPECT_FALSE(voice.trusts(5.1F));
    EXPECT_TRUE(voice.trusts(5.0F));
    for (int time = 0; time < 30; ++time)
        voice.trusts(10);
    EXPECT_TRUE(voice.trusts(10)) << "a voice may change for good";
}

} // namespace
} // namespace tessavox::voice
