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

void learn(VoiceLearner& voice, const VoiceLearner::Place& place, float value, int times)
{
    for (int time = 0; time < times; ++time)
        voice.learn(place, level(value));
}

TEST(VoiceLearner, BelievesAPlaceOfAPhoneOnceItWasHeardOften)
{
    VoiceLearner voice;
    learn(voice, { "a", 1 }, 10, 7);
    EXPECT_EQ(voice.adapted({ "a", 1 }, level(0)), level(0));
    learn(voice, { "a", 1 }, 10, 1);
    EXPECT_FLOAT_EQ(voice.adapted({ "a", 1 }, level(0))[0], 7);
    EXPECT_EQ(voice.adapted({ "a", 2 }, level(0)), level(0));
    EXPECT_EQ(voice.adapted({ "b", 1 }, level(0)), level(0));
}

TEST(VoiceLearner, ForgetsHowAVoiceWasLongAgo)
{
    VoiceLearner voice;
    learn(voice, { "a", 0 }, 10, 400);
    learn(voice, { "a", 0 }, 0, 1000);
    EXPECT_LT(voice.adapted({ "a", 0 }, level(0))[0], 1.5F) << "2 if all weighed alike";
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
