// The engines in real helper processes, which are killed, stopped and replaced by programs that are
// no helpers.
#include "tests/platform/voice/engines/made_utterance.h"
#include "tests/platform/voice/processes.h"

#include "platform/failure.h"
#include "platform/voice/rendering/helper_engines.h"
#include "platform/voice/rendering/render_wire.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <future>
#include <unistd.h>

namespace tessavox::voice {

using namespace tests;

namespace {

using std::chrono::milliseconds;

constexpr const char* helper_path = TESSAVOX_VOICE_HELPER;

std::u16string sentence(int number)
{
    std::u16string text = u"This is sentence";
    for (int word = 0; word < number % 7; ++word)
        text += u" and more";
    return text + u" of number " + to_utf16(std::to_string(number)) + u".";
}

// Those that stand within their walls, the oldest first. One that is stopped before that may stop
// whoever starts it.
std::vector<pid_t> confined_helpers()
{
    std::vector<pid_t> helpers = children_of(getpid());
    std::erase_if(helpers, [](pid_t helper) { return status_of(helper, "Seccomp") != "2"; });
    return helpers;
}

// Whether there are that many and no others.
bool helpers_run(std::size_t count)
{
    return children_of(getpid()).size() == count && confined_helpers().size() == count;
}

bool never()
{
    return false;
}

struct Helpers : testing::Test {
    void start(HelperPatience patience = {}, const char* path = helper_path)
    {
        engines.reset();
        engines = start_helper_engines({ path, 2, patience });
        english = engines->voices()->find("espeak:gmw/en-US");
        german = engines->voices()->find("espeak:gmw/de");
    }

    static Rendering next(RenderQueue& queue) { return queue.take(never)->rendering; }

    // Speaks `count` sentences; between them, `between` may do harm.
    template <class Between>
    void expect_all_in_order(RenderQueue& queue, int count, Between between, int most_ahead = 24)
    {
        int submitted = 0;
        for (int taken = 0; taken < count; ++taken) {
            while (submitted < std::min(count, taken + most_ahead) && queue.wants_more())
                queue.submit(english, 3, utterance_of(sentence(submitted++)));
            between(taken);
            const auto result = queue.take(never);
            ASSERT_TRUE(result);
            ASSERT_EQ(result->utterance.text, sentence(taken));
            EXPECT_EQ(result->rendering.words.size(), result->utterance.tokens.size());
            EXPECT_GT(result->rendering.samples.size(), 10'000U) << taken;
        }
        EXPECT_FALSE(queue.pending());
    }

    std::unique_ptr<SpeechEngines> engines;
    int english = -1;
    int german = -1;
};

} // namespace

TEST_F(Helpers, GiveBackConfinedWhatThePlainWayGivesInTheSameOrder)
{
    start();
    ASSERT_TRUE(eventually([] { return helpers_run(1); }));
    EXPECT_EQ(status_of(children_of(getpid()).front(), "NoNewPrivs"), "1");
    const auto plain = make_installed_catalog();
    ASSERT_GE(engines->voices()->tokens().size(), plain->tokens().size());
    const auto queue = engines->file_queue(100'000);
    std::vector<Utterance> utterances;
    for (int number = 0; number < 12; ++number)
        utterances.push_back(utterance_of(sentence(number)));
    utterances[3] = utterance_of(u"");
    utterances[4].style.spell = true;
    utterances[5].style.pitch = 10;
    utterances[6].pronunciation = { "h eh 1 l ow" };
    utterances[7].ends_sentence = false;
    utterances[8] = utterance_of(u"Grüße \U0001F600 中国");
    for (const Utterance& utterance : utterances)
        queue->submit(english, 2, utterance);
    const std::atomic<bool> not_cancelled{ false };
    for (std::size_t at = 0; at < utterances.size(); ++at) {
        const Rendering expected = plain->render(english, 2, utterances[at], not_cancelled);
        const auto result = queue->take(never);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->utterance.text, utterances[at].text);
        const auto length = static_cast<double>(expected.samples.size());
        EXPECT_NEAR(
            static_cast<double>(result->rendering.samples.size()), length, 300 + length / 50)
            << at;
        EXPECT_EQ(result->rendering.words.size(), expected.words.size());
        EXPECT_EQ(result->rendering.phones.size(), expected.phones.size());
        EXPECT_EQ(result->rendering.sample_rate, expected.sample_rate);
    }
}

TEST_F(Helpers, CostNoSentenceWhenTheyDieOrHangAtAnyMoment)
{
    start({ .quick = { std::chrono::seconds(3), milliseconds(0) } }); // long for a busy machine
    const auto live = engines->live_queue();
    const auto file = engines->file_queue(100'000);
    const auto harm = [](int taken) {
        const std::vector<pid_t> helpers = children_of(getpid());
        const pid_t one = helpers[static_cast<std::size_t>(taken) % helpers.size()];
        if (taken % 3 == 0 && taken < 30)
            kill(one, taken % 2 == 0 ? SIGKILL : SIGSEGV);
        if (taken == 35)
            for (const pid_t each : confined_helpers())
                kill(each, SIGSTOP);
    };
    // So that no sentence is in the hands of three that are lost.
    constexpr int most_ahead = 2;
    for (RenderQueue* queue : { live.get(), file.get() })
        expect_all_in_order(*queue, 40, harm, most_ahead);
}

// What is left of a sentence after that many helpers were lost over it.
TEST_F(Helpers, ReadAgainThenInTheReferenceVoiceThenNotAtAll)
{
    const Utterance utterance = utterance_of(u"4711 Grüße an 中国 und alle anderen.");
    start();
    auto queue = engines->live_queue();
    queue->submit(german, 0, utterance);
    const auto length = static_cast<double>(next(*queue).samples.size());
    for (std::size_t losses = 1; losses <= 3; ++losses) {
        SCOPED_TRACE(losses);
        queue.reset();
        start();
        ASSERT_TRUE(eventually([] { return helpers_run(1); }));
        kill(children_of(getpid())[0], SIGSTOP);
        queue = engines->live_queue();
        queue->submit(german, 0, utterance);
        queue->submit(english, 0, utterance_of(u"The next one."));
        auto spoken = std::async(std::launch::async, [&] { return queue->take(never); });
        for (std::size_t lost = 1; lost <= losses; ++lost) {
            // The helper in hand, and the reserve that is to follow it.
            ASSERT_TRUE(eventually([] { return helpers_run(2); }));
            const std::vector<pid_t> helpers = children_of(getpid());
            if (lost < losses)
                kill(helpers[1], SIGSTOP);
            kill(helpers[0], SIGKILL);
            ASSERT_TRUE(eventually([&] { return is_gone(helpers[0]); }));
            ASSERT_TRUE(eventually([&] { return children_of(getpid())[0] != helpers[0]; }));
        }
        const Rendering rendering = spoken.get()->rendering;
        const auto samples = static_cast<double>(rendering.samples.size());
        EXPECT_EQ(rendering.words.size(), losses < 3 ? utterance.tokens.size() : 0);
        EXPECT_TRUE(std::ranges::none_of(rendering.words, &WordMark::silent));
        EXPECT_EQ(rendering.sample_rate > 0, losses < 3);
        if (losses == 1)
            EXPECT_NEAR(samples, length, length / 50);
        else
            EXPECT_LT(samples, length * 0.9);
        EXPECT_GT(next(*queue).samples.size(), 5'000U);
    }
}

TEST_F(Helpers, AreNotBelievedIfTheyAreNone)
{
    // They are missing, end, echo, flood, and are silent.
    for (const char* path :
        { "/no/such/program", "/bin/true", "/bin/cat", "/usr/bin/yes", "/usr/bin/tail" }) {
        SCOPED_TRACE(path);
        start({ .slow = { milliseconds(50), milliseconds(0) } }, path);
        EXPECT_TRUE(engines->voices()->tokens().empty());
        const auto queue = engines->live_queue();
        queue->submit(0, 0, utterance_of(u"To nobody."));
        EXPECT_EQ(next(*queue).sample_rate, 0);
    }
}

TEST_F(Helpers, ForgetWhatIsDroppedAndAreWokenFromAWait)
{
    start();
    const auto queue = engines->live_queue();
    for (int round = 0; round < 5; ++round) {
        int submitted = 0;
        for (; queue->wants_more(); ++submitted)
            queue->submit(english, -10, utterance_of(std::u16string(400, u'a')));
        EXPECT_GE(submitted, 4);
        EXPECT_LE(submitted, 24);
        queue->drop();
        EXPECT_FALSE(queue->pending());
        expect_all_in_order(*queue, 1, [](int) {});
    }
    ASSERT_TRUE(eventually([] { return confined_helpers() == children_of(getpid()); }));
    for (const pid_t helper : confined_helpers())
        kill(helper, SIGSTOP);
    queue->submit(english, 0, utterance_of(sentence(1)));
    std::atomic<bool> interrupted{ false };
    auto taken = std::async(
        std::launch::async, [&] { return queue->take([&] { return interrupted.load(); }); });
    interrupted = true;
    queue->wake();
    EXPECT_FALSE(taken.get());
    EXPECT_TRUE(queue->pending());
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
