// Natural voices behind their helper: what is heard of them, and what when their programs fail.
#include "tests/platform/voice/engines/made_utterance.h"
#include "tests/platform/voice/processes.h"
#include "tests/platform/voice/programs/engine_folders.h"

#include "platform/voice/rendering/helper_engines.h"
#include "platform/voice/text/utterance_parts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>

namespace tessavox::voice {

using namespace tests;

namespace {

namespace fs = std::filesystem;

constexpr const char* stand_in = "/usr/bin/python3 " STAND_IN_ENGINES "/stand_in_engine.py ";

class ProgramVoices : public EngineFolders {
protected:
    ProgramVoices()
    {
        describe("flite", "wave", "flite -voice slt -t {text} -o {out}",
            "Vendor = Flite\nGender = Female");
        for (const char* behaviour : { "crash", "hang", "good" })
            describe(behaviour, "directory", stand_in + std::string(behaviour) + " {dir}",
                "Reads = " STAND_IN_ENGINES);
        describe("told", "frames", stand_in + std::string("told"), "Reads = " STAND_IN_ENGINES);
        engines = start_helper_engines({ TESSAVOX_VOICE_HELPER, 1, {} });
        queue = engines->live_queue();
    }
    void submit(const char* voice, const Utterance& utterance, int rate = 0)
    {
        queue->submit(engines->voices()->find(voice), rate, utterance);
    }
    Rendering spoken(const char* voice, const Utterance& utterance, int rate = 0)
    {
        submit(voice, utterance, rate);
        return queue->take([] { return false; })->rendering;
    }
    static double seconds(const Rendering& rendering)
    {
        return static_cast<double>(rendering.samples.size()) / rendering.sample_rate;
    }

    std::unique_ptr<SpeechEngines> engines;
    std::unique_ptr<RenderQueue> queue;
};

} // namespace

TEST_F(ProgramVoices, HaveTheirWordsWhereTheyAreHeard)
{
    constexpr std::u16string_view texts[] = {
        u"The quick brown fox jumps over the lazy dog near the bank of the river.",
        u"After that it sleeps in the warm sun, and nobody wakes it before supper.",
        u"Whoever reads this aloud will notice that some words are longer than others.",
        u"Perhaps you have never seen a lighthouse from the inside?",
        u"Seven ships were waiting outside the harbour until the storm had passed.",
    };
    double sum = 0;
    int count = 0;
    for (const std::u16string_view text : texts) {
        const Utterance utterance = utterance_of(text);
        const Rendering truth = spoken("flite:slt", utterance);
        const Rendering natural = spoken("voice:flite", utterance);
        EXPECT_NEAR(seconds(natural), seconds(truth), 0.5);
        ASSERT_EQ(natural.words.size(), truth.words.size());
        EXPECT_GT(natural.phones.size(), truth.phones.size() / 2);
        for (std::size_t word = 0; word < truth.words.size(); ++word, ++count)
            sum += std::fabs(static_cast<double>(natural.words[word].frame) / natural.sample_rate
                - static_cast<double>(truth.words[word].frame) / truth.sample_rate);
    }
    EXPECT_LT(sum / count, 0.03);
}

TEST_F(ProgramVoices, SayThemselvesWhereTheirWordsAreIfTheyKnow)
{
    const Rendering told = spoken("voice:told", utterance_of(u"One two three."));
    EXPECT_EQ(told.words[0].frame, 4000U);
    EXPECT_GT(told.words[1].frame, 4000U);
    EXPECT_EQ(told.words[2].frame, 12000U);
}

TEST_F(ProgramVoices, AreBentToTheSpeedAndSpellAndAreCutWhereTheyWereSpokenBefore)
{
    const Utterance whole = utterance_of(u"The quick brown fox jumps over the lazy dog.");
    const double natural = seconds(spoken("voice:flite", whole));
    EXPECT_NEAR(seconds(spoken("voice:flite", whole, 10)), natural / 3, 0.1);
    EXPECT_NEAR(seconds(spoken("voice:flite", whole, -10)), natural * 3, 0.1);
    EXPECT_NEAR(
        seconds(spoken("voice:flite", utterance_of(whole.text, { .pitch = 10 }))), natural, 0.1);
    const Rendering again = spoken("voice:flite", whole);
    const Rendering rest = spoken("voice:flite", rest_of(whole, 4));
    EXPECT_EQ(rest.samples.size(), again.samples.size() - again.words[4].frame);
    EXPECT_EQ(rest.words[3].frame, again.words[7].frame - again.words[4].frame);
    EXPECT_GT(seconds(spoken("voice:flite", utterance_of(u"fox", { .spell = true }))), 1);
    Utterance replaced = utterance_of(u"fox");
    replaced.pronunciation = { "d ao 1 g" };
    EXPECT_GT(seconds(spoken("voice:flite", replaced)), 0.3);
}

TEST_F(ProgramVoices, ThatFailAreReadByTheReferenceVoice)
{
    const Utterance utterance = utterance_of(u"Nothing of this is lost.");
    const double reference = seconds(spoken("espeak:gmw/en-US", utterance));
    for (int sentence = 0; sentence < 4; ++sentence)
        EXPECT_NEAR(seconds(spoken("voice:crash", utterance)), reference, 0.01);
    EXPECT_NEAR(seconds(spoken("voice:good", utterance)), 0.8, 0.1) << "its noise";
}

TEST_F(ProgramVoices, EndWithTheirHelperAlsoWhenItIsKilled)
{
    submit("voice:hang", utterance_of(u"Nobody answers."));
    pid_t helper = 0;
    pid_t keeper = 0;
    pid_t program = 0;
    ASSERT_TRUE(eventually([&] {
        for (const pid_t one : children_of(getpid()))
            for (const pid_t ones : children_of(helper = one))
                for (const pid_t its : children_of(keeper = ones))
                    return (program = its) != 0;
        return false;
    }));
    ASSERT_FALSE(fs::is_empty(runtime));
    kill(helper, SIGKILL);
    EXPECT_TRUE(eventually([&] { return is_gone(program) && is_gone(keeper); }));
    EXPECT_TRUE(fs::is_empty(runtime));
}

} // namespace tessavox::voice
