// Engines that do everything wrong that a program can do, in real processes.
#include "tests/platform/voice/programs/engine_folders.h"

#include "platform/failure.h"
#include "platform/voice/programs/engine_process.h"
#include "platform/voice/programs/sound_answer.h"

#include <gmock/gmock.h>

#include <sys/wait.h>

namespace tessavox::voice {

using namespace tests;

namespace {

using testing::HasSubstr;

class EngineProcesses : public EngineFolders {
protected:
    // What is wrong with the second of two answers; empty if nothing is.
    std::string complaint_about(const std::string& behaviour, const std::string& mode)
    {
        const std::string arguments = mode == "directory" ? "\" {dir}" : "\"";
        const NaturalVoice voice = read_natural_voice(
            describe("voice", mode,
                std::string("/usr/bin/python3 " STAND_IN_ENGINES "/stand_in_engine.py \"")
                    + behaviour + arguments,
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

} // namespace

TEST_F(EngineProcesses, AreToldWhatTheyDoWrongAndLeaveNothingBehind)
{
    struct Case {
        const char* behaviour;
        const char* complaint;
        const char* mode = "directory";
    };
    constexpr Case cases[] = {
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
    for (const Case& one : cases) {
        const std::string complaint = complaint_about(one.behaviour, one.mode);
        EXPECT_THAT(complaint, HasSubstr(one.complaint)) << one.behaviour;
        EXPECT_EQ(complaint.empty(), !*one.complaint) << one.behaviour << ": " << complaint;
        EXPECT_LT(waitpid(-1, nullptr, WNOHANG), 0) << one.behaviour << " leaves a process";
        EXPECT_TRUE(std::filesystem::is_empty(runtime)) << one.behaviour << " leaves a file";
    }
}

} // namespace tessavox::voice
