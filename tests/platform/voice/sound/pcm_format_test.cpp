#include "platform/failure.h"
#include "platform/voice/sound/pcm_format.h"

#include <gtest/gtest.h>

namespace tessavox::voice {
namespace {

TEST(PcmFormat, Has36NumbersAndEverythingElseIsRefused)
{
    EXPECT_EQ(PcmFormat::from_type(4), (PcmFormat{ 8000, 8, 1 }));
    EXPECT_EQ(PcmFormat::from_type(11), (PcmFormat{ 11025, 16, 2 }));
    EXPECT_EQ(PcmFormat::from_type(12), (PcmFormat{ 12000, 8, 1 }));
    EXPECT_EQ(PcmFormat::from_type(22), (PcmFormat{ 22050, 16, 1 }));
    EXPECT_EQ(PcmFormat::from_type(25), (PcmFormat{ 24000, 8, 2 }));
    EXPECT_EQ(PcmFormat::from_type(39), (PcmFormat{ 48000, 16, 2 }));
    for (int type = 4; type <= 39; ++type)
        EXPECT_EQ(PcmFormat::from_type(type).type(), type);
    for (const int type : { -1, 3, 40 })
        EXPECT_THROW(PcmFormat::from_type(type), Failure) << type;
    for (const PcmFormat format :
        { PcmFormat{ 96000, 16, 2 }, PcmFormat{ 8000, 24, 1 }, PcmFormat{ 8000, 8, 3 } })
        EXPECT_THROW(format.type(), Failure);
}

} // namespace
} // namespace tessavox::voice
