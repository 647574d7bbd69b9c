// The sound server for real: what is heard, and what happens when it goes away.
#include "platform/failure.h"
#include "platform/voice/sound/audio_sink.h"
#include "tests/platform/voice/sound/sound_server_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>

namespace tessavox::voice {
namespace {

constexpr PcmFormat device_format{ .rate = 48000, .bits = 16, .channels = 2 };

class PulseServer : public testing::Test {
protected:
    void SetUp() override
    {
        if (!SoundServerProcess::is_installed())
            GTEST_SKIP() << "there is no sound server on this machine";
        process = std::make_unique<SoundServerProcess>();
        server = make_pulse_server("Tessavox test");
    }

    std::unique_ptr<AudioSink> open(const std::string& output = "")
    {
        return server->open(device_format, output, [this] { ++wakes; });
    }

    std::unique_ptr<SoundServerProcess> process;
    std::unique_ptr<SoundServer> server;
    std::atomic<int> wakes = 0;
};

// Frames that are told apart: the left counts from 1, the right is its negative.
class Counter {
public:
    void write(AudioSink& sink, std::size_t frames)
    {
        while (frames > 0 && sink.alive()) {
            const std::size_t now = std::min(frames, sink.writable());
            std::vector<std::int16_t> samples;
            for (std::size_t i = 0; i < now; ++i) {
                samples.push_back(++m_count);
                samples.push_back(static_cast<std::int16_t>(-m_count));
            }
            sink.write(std::as_bytes(std::span(samples)));
            frames -= now;
            rest_a_millisecond();
        }
    }
    std::int16_t count() const { return m_count; }

private:
    std::int16_t m_count = 0;
};

/// The left samples that are no silence.
std::vector<std::int16_t> heard(const Recorder& recorder)
{
    const auto samples = recorder.samples();
    std::vector<std::int16_t> left;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        if (samples[i] != 0)
            left.push_back(samples[i]);
    }
    return left;
}

std::vector<std::int16_t> counted(int from, int to)
{
    std::vector<std::int16_t> numbers;
    for (int number = from; number <= to; ++number)
        numbers.push_back(static_cast<std::int16_t>(number));
    return numbers;
}

TEST_F(PulseServer, EverySampleIsHeardOnceThroughPausesTooFromTheFirstToTheLast)
{
    const Recorder recorder(*process);
    const auto sink = open("exact");
    Counter counter;
    for (const std::size_t frames : { 4800, 1234, 9000 }) {
        counter.write(*sink, frames);
        sink->pause();
        const auto at = sink->played();
        for (int look = 0; look < 30; ++look) {
            ASSERT_EQ(sink->played(), at);
            rest_a_millisecond();
        }
        sink->resume();
    }
    sink->finish();
    ASSERT_TRUE(eventually([&] { return sink->played() == std::size_t(counter.count()); }));
    EXPECT_TRUE(eventually([&] { return heard(recorder).size() >= std::size_t(counter.count()); }));
    EXPECT_EQ(heard(recorder), counted(1, counter.count()));
}

TEST_F(PulseServer, ListsItsOutputsAndOneThatIsTakenAwayEndsItsStream)
{
    ASSERT_TRUE(eventually([&] { return server->outputs().size() == 1; }));
    EXPECT_EQ(server->outputs().front().name, "nul");
    EXPECT_EQ(server->outputs().front().description, "Nothing");
    process->control({ "load-module", "module-null-sink", "sink_name=second" });
    EXPECT_TRUE(eventually([&] { return server->outputs().size() == 2; }));
    EXPECT_THROW(open("no such output"), Failure);
    const auto first = open("nul");
    const auto second = open("second");
    EXPECT_TRUE(first->alive() && second->alive());
    process->control({ "unload-module", "module-null-sink" });
    EXPECT_TRUE(eventually([&] { return !second->alive() && !first->alive(); }));
    process->control({ "load-module", "module-null-sink", "sink_name=third" });
    EXPECT_TRUE(open("third")->alive());
}

TEST_F(PulseServer, AKilledServerEndsTheStreamAndTheNextOpenFindsItsSuccessor)
{
    auto sink = open();
    Counter counter;
    counter.write(*sink, 2400);
    int before = wakes;
    EXPECT_TRUE(eventually([&] { return wakes > before; })) << "when room comes free";
    before = wakes;
    process->kill();
    EXPECT_TRUE(eventually([&] { return !sink->alive(); }));
    EXPECT_GT(wakes, before);
    const auto at = sink->played();
    sink->write(std::vector<std::byte>(400));
    sink->pause();
    sink->resume();
    sink->finish();
    sink->flush();
    EXPECT_EQ(sink->writable(), 0U);
    EXPECT_EQ(sink->played(), at);
    EXPECT_THROW(open(), Failure);
    EXPECT_TRUE(server->outputs().empty());
    process->start();
    EXPECT_TRUE(open()->alive());
    EXPECT_FALSE(sink->alive());
}

TEST_F(PulseServer, AServerThatDoesNotAnswerIsGivenUp)
{
    const auto sink = open();
    process->signal(SIGSTOP);
    EXPECT_THROW(open(), Failure); // it was connected
    EXPECT_THROW(open(), Failure); // it is connected anew
    process->signal(SIGCONT);
    EXPECT_TRUE(eventually([&] { return attempt([&] { open(); }); }));
    EXPECT_TRUE(sink->alive());
}

} // namespace
} // namespace tessavox::voice
