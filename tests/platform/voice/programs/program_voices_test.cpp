// Engines that are programs, in real processes: what is heard of them, and when they do everything
// wrong that a program can do.
#include "platform/failure.h"
#include "platform/voice/programs/engine_process.h"
#include "platform/voice/programs/sound_answer.h"
#include "platform/voice/rendering/helper_engines.h"
#include "platform/voice/text/utterance_parts.h"
#include "tests/platform/voice/engines/made_utterance.h"
#include "tests/platform/voice/processes.h"

#include <gmock/gmock.h>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace tessavox::voice {

using namespace tests;

namespace {

namespace fs = std::filesystem;

constexpr const char* stand_in = "/usr/bin/python3 " STAND_IN_ENGINES "/stand_in_engine.py ";

/// A home of its own, in which nothing may be left. Sets HOME, XDG_DATA_HOME and XDG_RUNTIME_DIR.
struct EngineFolders : testing::Test {
    EngineFolders()
    {
        for (const auto& [variable, folder] :
            { std::pair("HOME", home), std::pair("XDG_DATA_HOME", home / "data"),
                std::pair("XDG_RUNTIME_DIR", runtime) }) {
            fs::create_directories(folder);
            setenv(variable, folder.c_str(), 1);
        }
    }
    ~EngineFolders() override
    {
        // A program that is just ending removes its folder too.
        std::error_code error;
        do
            fs::remove_all(root, error);
        while (error == std::errc::no_such_file_or_directory);
    }

    /// A description in the user's own folder. Returns its path.
    fs::path describe(const std::string& name, const std::string& mode, const std::string& command,
        const std::string& more = "")
    {
        const fs::path folder = home / "data/tessavox/voices";
        fs::create_directories(folder);
        std::ofstream(folder / (name + ".voice"))
            << "Name = " << name << "\nLanguage = en-US\nMode = " << mode
            << "\nCommand = " << command << "\n"
            << more << "\n";
        return folder / (name + ".voice");
    }

    const fs::path root
        = fs::temp_directory_path() / ("tessavox-engines-" + std::to_string(getpid()));
    const fs::path home = root / "home";
    const fs::path runtime = root / "run";
};

struct EngineProcesses : EngineFolders {
    // What is wrong with the second of two answers; empty if nothing is.
    std::string complaint_about(const std::string& behaviour, const std::string& mode)
    {
        const std::string arguments = mode == "directory" ? "\" {dir}" : "\"";
        const NaturalVoice voice
            = read_natural_voice(describe("voice", mode, stand_in + ("\"" + behaviour + arguments),
                                     "SampleRate = 16000\nReads = " STAND_IN_ENGINES),
                {});
        try {
            EngineProcess engine(voice);
            for (int line = 0; line < 2; ++line) {
                // Long for a start of Python, short for a hang.
                EnginePatience patience{ std::chrono::steady_clock::now()
                        + std::chrono::seconds(behaviour == "hang" ? 1 : 30),
                    -1, {} };
                const auto answer = engine.say("Hello there.", patience);
                read_sound(voice.description.mode, answer, voice.description.sample_rate);
            }
            EXPECT_LT(engine.last_errors().size(), 1000U);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return {};
    }
};

TEST_F(EngineProcesses, AreToldWhatTheyDoWrongAndLeaveNothingBehind)
{
    constexpr struct {
        const char* behaviour;
        const char* complaint;
        const char* mode = "directory";
    } cases[] = {
        { "good", "" },
        { "errors", "" },
        { "child", "" },
        { "twice", "answers more than it is asked" },
        { "crash", "ended with 1" },
        { "hang", "does not answer in time" },
        { "broken", "broken off" },
        { "no wave", "no wave file" },
        { "endless", "larger than" },
        { "stereo", "2 channels instead of one" },
        { "memory", "ended with 1" },
        { "network", "ended with 1" },
        { "home", "ended with 1" },
        { "frames", "", "frames" },
        { "no frames", "no header", "frames" },
        { "words in no order", "no rising order", "frames" },
    };
    std::ofstream(home / "diary") << "private";
    for (const auto& one : cases) {
        const std::string complaint = complaint_about(one.behaviour, one.mode);
        EXPECT_THAT(complaint, testing::HasSubstr(one.complaint)) << one.behaviour;
        EXPECT_EQ(complaint.empty(), !*one.complaint) << one.behaviour << ": " << complaint;
        EXPECT_LT(waitpid(-1, nullptr, WNOHANG), 0) << one.behaviour << " leaves a process";
        EXPECT_TRUE(fs::is_empty(runtime)) << one.behaviour << " leaves a file";
    }
}

struct ProgramVoices : EngineFolders {
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

} // namespace
} // namespace tessavox::voice
