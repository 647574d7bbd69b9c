#include "platform/failure.h"
#include "platform/voice/sound/pcm_format.h"

#include <gtest/gtest.h>

namespace tessavox::voice {
namespace {

TEST(PcmFormat, NumbersAreThoseOfTheTable)
{
    const struct {
        int type;
        PcmFormat format;
    } rows[] = {
        { 4, { 8000, 8, 1 } },
        { 5, { 8000, 8, 2 } },
        { 6, { 8000, 16, 1 } },
        { 11, { 11025, 16, 2 } },
        { 12, { 12000, 8, 1 } },
        { 18, { 16000, 16, 1 } },
        { 22, { 22050, 16, 1 } },
        { 25, { 24000, 8, 2 } },
        { 30, { 32000, 16, 1 } },
        { 35, { 44100, 16, 2 } },
        { 39, { 48000, 16, 2 } },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(PcmFormat::from_type(row.type), row.format) << row.type;
        EXPECT_EQ(row.format.type(), row.type);
    }
}

TEST(PcmFormat, EachOfThe36NumbersComesBack)
{
    for (int type = 4; type <= 39; ++type)
        EXPECT_EQ(PcmFormat::from_type(type).type(), type);
}

TEST(PcmFormat, AnythingElseIsRefused)
{
    for (const int type : { -1, 0, 3, 40, 1000 })
        EXPECT_THROW(PcmFormat::from_type(type), Failure) << type;
    for (const PcmFormat format :
        { PcmFormat{ 96000, 16, 2 }, PcmFormat{ 8000, 24, 1 }, PcmFormat{ 8000, 8, 3 } })
        EXPECT_THROW(format.type(), Failure);
}

} // namespace
} // namespace tessavox::voice
