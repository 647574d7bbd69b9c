// What every sink has to do, asked of the clock and of the real sound server alike.
#include "platform/voice/sound/audio_sink.h"
#include "tests/platform/voice/sound/sound_server_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace tessavox::voice {
namespace {

enum class Kind { clock, server };

struct Case {
    Kind kind;
    PcmFormat format;
};

class AudioSinks : public testing::TestWithParam<Case> {
protected:
    static void TearDownTestSuite()
    {
        server.reset();
        recorder.reset();
        process.reset();
    }

    void SetUp() override
    {
        if (GetParam().kind == Kind::clock) {
            sink = make_clock_sink(GetParam().format);
            return;
        }
        if (!SoundServerProcess::is_installed())
            GTEST_SKIP() << "there is no sound server on this machine";
        if (!process) {
            process.emplace();
            recorder.emplace(*process);
            server = make_pulse_server("Tessavox test");
        }
        sink = server->open(GetParam().format, "exact", [] {});
    }

    /// Writes so many frames as room comes free; watches the rules of played() meanwhile.
    void write(std::size_t frames)
    {
        while (frames > 0 && sink->alive()) {
            const std::size_t now = std::min(frames, sink->writable());
            sink->write(std::vector<std::byte>(
                now * static_cast<std::size_t>(sink->format().block_align())));
            frames -= now;
            written += now;
            watch();
            rest_a_millisecond();
        }
    }

    std::uint64_t watch()
    {
        const std::uint64_t now = sink->played();
        EXPECT_GE(now, last);
        EXPECT_LE(now, written);
        return last = now;
    }

    std::size_t frames(int milliseconds) const
    {
        return static_cast<std::size_t>(sink->format().rate * milliseconds / 1000);
    }

    bool plays_to_the_end()
    {
        return eventually([this] { return watch() == written; });
    }

    inline static std::optional<SoundServerProcess> process;
    inline static std::optional<Recorder> recorder;
    inline static std::unique_ptr<SoundServer> server;
    std::unique_ptr<AudioSink> sink;
    std::uint64_t written = 0;
    std::uint64_t last = 0;
};

TEST_P(AudioSinks, PlaysHoweverFewFramesAtFinishAndMoreMayFollow)
{
    EXPECT_EQ(sink->format(), GetParam().format);
    EXPECT_TRUE(sink->alive());
    EXPECT_EQ(sink->played(), 0U);
    for (const std::size_t count : { std::size_t{ 3 }, std::size_t{ 1 }, frames(250) }) {
        write(count);
        sink->finish();
        ASSERT_TRUE(plays_to_the_end()) << count;
    }
}

TEST_P(AudioSinks, TakesLittleMoreThanATenthOfASecondAhead)
{
    sink->pause();
    ASSERT_TRUE(eventually([this] { return sink->writable() > 0; }));
    std::size_t taken = 0;
    for (int round = 0; round < 50; ++round) {
        const std::size_t room = sink->writable();
        sink->write(
            std::vector<std::byte>(room * static_cast<std::size_t>(sink->format().block_align())));
        taken += room;
        rest_a_millisecond();
    }
    EXPECT_GT(taken, frames(40));
    EXPECT_LT(taken, frames(150));
    EXPECT_EQ(sink->played(), 0U);
}

TEST_P(AudioSinks, StandsStillWhilePausedAndGoesOnAlsoAfterAFlush)
{
    for (const auto& [paused, flushed] :
        { std::pair(true, false), { false, true }, { true, true } }) {
        SCOPED_TRACE(testing::Message() << paused << flushed);
        write(frames(70));
        const std::uint64_t before = last;
        ASSERT_TRUE(eventually([&] { return watch() > before; }));
        if (paused)
            sink->pause();
        if (flushed) {
            sink->flush();
            const std::uint64_t dropped = written - sink->played();
            EXPECT_GT(dropped, 0U);
            written -= dropped;
        }
        const std::uint64_t at = watch();
        for (int look = 0; paused && look < 100; ++look) {
            ASSERT_EQ(watch(), at);
            rest_a_millisecond();
        }
        write(frames(paused ? 20 : 120)); // without a pause more than fits: the room is given back
        EXPECT_TRUE(!paused || watch() == at);
        sink->finish(); // in the pause, as it happens when the last sentence is ready
        sink->resume();
        ASSERT_TRUE(plays_to_the_end());
    }
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, AudioSinks,
    testing::Values(Case{ Kind::clock, { 48000, 16, 2 } }, Case{ Kind::clock, { 8000, 8, 1 } },
        Case{ Kind::server, { 22050, 16, 1 } }, Case{ Kind::server, { 8000, 8, 1 } }),
    [](const auto& info) {
        return std::string(info.param.kind == Kind::clock ? "Clock" : "Server")
            + std::to_string(info.param.format.rate);
    });

} // namespace
} // namespace tessavox::voice
