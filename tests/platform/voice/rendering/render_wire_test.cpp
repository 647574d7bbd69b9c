#include "tests/platform/voice/engines/made_utterance.h"

#include "platform/failure.h"
#include "platform/voice/rendering/render_wire.h"

#include <gtest/gtest.h>

namespace tessavox::voice {

using namespace tests;

TEST(Wire, CarriesARequestAndAnAnswer)
{
    WireRequest request{ "espeak:gmw/de", -7, utterance_of(u"Grüße an alle") };
    request.utterance.pronunciation = "a b c";
    request.utterance.style = { 1, -2, 4, true, false, true };
    request.utterance.contexts = { { 4, 3, "date_mdy" } };
    WireBytes bytes;
    append_request(bytes, 5, request);
    const auto header = peek_header(bytes);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->job, 5U);
    const WireRequest read = read_request(std::span(bytes).subspan(sizeof(WireHeader)));
    EXPECT_EQ(read.voice_id, request.voice_id);
    EXPECT_EQ(read.rate, request.rate);
    EXPECT_EQ(read.utterance.text, request.utterance.text);
    EXPECT_EQ(read.utterance.pronunciation, request.utterance.pronunciation);
    EXPECT_TRUE(read.utterance.ends_sentence);
    EXPECT_EQ(read.utterance.style, (SpeechStyle{ 1, -2, -1, true, false, true }));
    ASSERT_EQ(read.utterance.contexts.size(), 1U);
    EXPECT_EQ(read.utterance.contexts[0].context, "date_mdy");
    EXPECT_EQ(read.utterance.contexts[0].begin, 4U);
    ASSERT_EQ(read.utterance.tokens.size(), 3U);
    EXPECT_EQ(read.utterance.tokens[2].begin, 9U);
}

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
