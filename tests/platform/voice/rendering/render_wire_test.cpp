#include "tests/platform/voice/engines/made_utterance.h"

#include "platform/failure.h"
#include "platform/voice/rendering/render_wire.h"

#include <gtest/gtest.h>

namespace tessavox::voice {

using namespace tests;

TEST(Wire, RefusesEveryMessageThatWasCutOrChangedWithoutHarm)
{
    WireBytes request;
    append_request(request, 1, { "espeak:gmw/de", 0, utterance_of(u"one two") });
    WireBytes answer;
    append_answer(answer, 1,
        Rendering{ 22050, std::vector<std::int16_t>(50), { { 0, 0 }, { 1, 40 } },
            { { 0, 50, 1, 2, 0 } } });
    const auto body = [](WireBytes& bytes) { return std::span(bytes).subspan(sizeof(WireHeader)); };
    ASSERT_NO_THROW(read_request(body(request)));
    ASSERT_TRUE(read_answer(body(answer), 2));
    EXPECT_THROW(read_answer(body(answer), 3), Failure);
    for (std::size_t length = 0; length < body(request).size(); ++length)
        EXPECT_THROW(read_request(body(request).first(length)), Failure);
    for (std::size_t length = 0; length < body(answer).size(); ++length)
        EXPECT_THROW(read_answer(body(answer).first(length), 2), Failure);
    // Whatever a flipped byte makes of it, what comes through keeps its promises.
    for (std::size_t at = sizeof(WireHeader); at < answer.size(); ++at) {
        WireBytes changed = answer;
        changed[at] ^= std::byte{ 0x81 };
        attempt([&] {
            const auto rendering = read_answer(body(changed), 2);
            if (!rendering)
                return;
            EXPECT_EQ(rendering->words.size(), 2U);
            EXPECT_LE(rendering->words[0].frame, rendering->words[1].frame);
            EXPECT_LE(rendering->words[1].frame, rendering->samples.size());
        });
    }
    std::vector<std::byte> noise(64, std::byte{ 0x55 });
    EXPECT_THROW(peek_header(noise), Failure);
}

} // namespace tessavox::voice
