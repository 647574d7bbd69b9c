// The farm with real helper processes, and with programs that are none.
#include "made_utterance.h"

#include "platform/failure.h"
#include "platform/voice/engines/render_farm.h"
#include "platform/voice/engines/render_wire.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace tessavox::voice {

using namespace tests;

namespace {

constexpr const char* helper_path = TESSAVOX_VOICE_HELPER;

std::u16string sentence(int number)
{
    std::u16string text = u"This is sentence";
    for (int word = 0; word < number % 7; ++word)
        text += u" and more";
    return text + u" of number " + to_utf16(std::to_string(number)) + u".";
}

std::vector<pid_t> child_processes()
{
    std::ifstream file("/proc/self/task/" + std::to_string(getpid()) + "/children");
    std::vector<pid_t> processes;
    for (pid_t process = 0; file >> process;)
        processes.push_back(process);
    return processes;
}

} // namespace

class Farm : public testing::Test {
protected:
    // Speaks `count` sentences; between them, `between` may do harm.
    template <class Between> void expect_all_in_order(RenderFarm& farm, int count, Between between)
    {
        int submitted = 0;
        for (int taken = 0; taken < count; ++taken) {
            while (submitted < count && farm.wants_more())
                farm.submit(voice, 3, utterance_of(sentence(submitted++)));
            between(taken);
            ASSERT_TRUE(farm.pending());
            const RenderFarm::Result result = farm.take(not_cancelled);
            ASSERT_EQ(result.utterance.text, sentence(taken));
            EXPECT_EQ(result.rendering.words.size(), result.utterance.tokens.size());
            EXPECT_GT(result.rendering.samples.size(), 10'000U);
            // Near silence at both ends, so that no join is heard.
            EXPECT_LT(std::abs(result.rendering.samples.front()), 200);
            EXPECT_LT(std::abs(result.rendering.samples.back()), 200);
        }
        EXPECT_FALSE(farm.pending());
    }

    static VoiceCatalog& catalog()
    {
        static const std::unique_ptr<VoiceCatalog> catalog = make_installed_catalog();
        return *catalog;
    }

    const std::atomic<bool> not_cancelled{ false };
    const int voice = catalog().find("espeak:gmw/en-US");
};

TEST_F(Farm, GivesBackWhatThePlainWayGivesInTheSameOrder)
{
    RenderFarm farm(catalog(), helper_path, 2);
    ASSERT_EQ(child_processes().size(), 2U);
    std::vector<Utterance> utterances;
    for (int number = 0; number < 12; ++number)
        utterances.push_back(utterance_of(sentence(number)));
    utterances[3] = utterance_of(u"");
    utterances[4].style.spell = true;
    utterances[5].style.pitch = 10;
    utterances[6].pronunciation = { "h eh 1 l ow" };
    utterances[7].ends_sentence = false;
    utterances[8] = utterance_of(u"Grüße \U0001F600 中国");
    std::vector<Rendering> plain;
    for (const Utterance& utterance : utterances) {
        plain.push_back(catalog().render(voice, 2, utterance, not_cancelled));
        farm.submit(voice, 2, utterance);
    }
    for (std::size_t at = 0; at < utterances.size(); ++at) {
        const RenderFarm::Result result = farm.take(not_cancelled);
        EXPECT_EQ(result.utterance.text, utterances[at].text);
        const auto expected = static_cast<double>(plain[at].samples.size());
        EXPECT_NEAR(
            static_cast<double>(result.rendering.samples.size()), expected, 300 + expected / 50)
            << at;
        EXPECT_EQ(result.rendering.words.size(), plain[at].words.size());
        EXPECT_EQ(result.rendering.phones.size(), plain[at].phones.size());
        EXPECT_EQ(result.rendering.sample_rate, plain[at].sample_rate);
    }
}

TEST_F(Farm, LeavesNoProcessBehind)
{
    {
        RenderFarm farm(catalog(), helper_path, 2);
        farm.submit(voice, 0, utterance_of(sentence(1)));
        EXPECT_EQ(child_processes().size(), 2U);
    }
    EXPECT_TRUE(child_processes().empty());
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(Farm, GoesOnWhenAHelperIsKilled)
{
    RenderFarm farm(catalog(), helper_path, 2);
    expect_all_in_order(farm, 40, [&](int taken) {
        if (taken == 10)
            kill(child_processes().front(), SIGKILL);
        if (taken == 20)
            kill(child_processes().back(), SIGTERM);
    });
}

TEST_F(Farm, SkipsWhatCrashedAHelper)
{
    RenderFarm farm(catalog(), helper_path, 1);
    const pid_t helper = child_processes().front();
    kill(helper, SIGSTOP);
    farm.submit(voice, 0, utterance_of(sentence(0)));
    farm.submit(voice, 0, utterance_of(sentence(1)));
    kill(helper, SIGSEGV);
    kill(helper, SIGCONT);
    EXPECT_TRUE(farm.take(not_cancelled).rendering.samples.empty());
    EXPECT_FALSE(farm.take(not_cancelled).rendering.samples.empty());
}

TEST_F(Farm, SpeaksWithoutHelpersToo)
{
    RenderFarm none(catalog(), helper_path, 0);
    expect_all_in_order(none, 3, [](int) {});
    RenderFarm missing(catalog(), "/no/such/program", 2);
    expect_all_in_order(missing, 3, [](int) {});
}

TEST_F(Farm, DoesNotBelieveProgramsThatAreNoHelpers)
{
    // They end, echo, flood, and are silent.
    for (const char* program : { "/bin/true", "/bin/cat", "/usr/bin/yes", "/usr/bin/tail" }) {
        SCOPED_TRACE(program);
        ASSERT_EQ(access(program, X_OK), 0);
        RenderFarm farm(catalog(), program, 2, std::chrono::milliseconds(50));
        expect_all_in_order(farm, 6, [](int) {});
        EXPECT_TRUE(child_processes().empty());
    }
}

TEST_F(Farm, TakesEarlyWhenCancelled)
{
    RenderFarm farm(catalog(), "/usr/bin/tail", 1);
    farm.submit(voice, 0, utterance_of(sentence(1)));
    const std::atomic<bool> cancelled{ true };
    EXPECT_TRUE(farm.take(cancelled).rendering.samples.empty());
    EXPECT_TRUE(farm.pending());
}

TEST_F(Farm, AsksForABoundedNumberOfUtterances)
{
    RenderFarm farm(catalog(), "/usr/bin/tail", 2);
    int submitted = 0;
    while (farm.wants_more() && submitted < 1000) {
        farm.submit(voice, 0, utterance_of(std::u16string(400, u'a')));
        ++submitted;
    }
    EXPECT_GE(submitted, 4);
    EXPECT_LE(submitted, 24);
}

TEST_F(Farm, AVoiceThatIsNotThereGivesAnEmptyRendering)
{
    RenderFarm farm(catalog(), helper_path, 1);
    for (const int wrong : { -1, 1'000'000 })
        farm.submit(wrong, 0, utterance_of(sentence(1)));
    farm.submit(voice, 0, utterance_of(sentence(2)));
    EXPECT_TRUE(farm.take(not_cancelled).rendering.samples.empty());
    EXPECT_TRUE(farm.take(not_cancelled).rendering.samples.empty());
    EXPECT_FALSE(farm.take(not_cancelled).rendering.samples.empty());
}

TEST(Wire, CarriesARequestAndAnAnswer)
{
    WireRequest request{ "espeak:gmw/de", -7, utterance_of(u"Grüße an alle") };
    request.utterance.pronunciation = { "a", "b c" };
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
