#include "platform/voice/event_queue.h"

#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/file_stream.h"
#include "tests/platform/voice/core/listener.h"

#include <gmock/gmock.h>

namespace tessavox::voice::test {
namespace {

using testing::ElementsAre;

class EventQueueTest : public testing::Test {
protected:
    EventQueueTest()
    {
        file_job.stream = job.stream = 1;
        file_job.file = std::make_shared<FileTarget>(nullptr, PcmFormat());
    }
    void add(const Job& to, Happening happening, std::uint64_t frame = 0)
    {
        queue->append(to, { { frame, 0, std::move(happening) } });
    }

    MessageLoop loop;
    Listener listener;
    int posts = 0;
    std::shared_ptr<EventQueue> queue = std::make_shared<EventQueue>(
        listener, std::make_shared<VoiceCatalog>(std::vector<std::unique_ptr<Engine>>()),
        [this](std::function<void()> call) {
            ++posts;
            loop.post(std::move(call));
        },
        std::make_shared<Wakeup>());
    Job job;
    Job file_job;
};

TEST_F(EventQueueTest, OnePostedCallBringsAllThatWait)
{
    add(job, StreamStarted());
    add(job, WordStarted{ 0, 3 }, 10);
    add(job, BookmarkReached{ "12 monkeys" }, 20);
    EXPECT_EQ(posts, 1);
    loop.run_posted();
    EXPECT_THAT(listener.told(""), ElementsAre("StartStream", "Word 0+3", "Bookmark 12 monkeys"));
    EXPECT_EQ(listener.heard[1].position, 40) << "48 kHz, 16 bit, stereo";
    add(job, StreamEnded());
    EXPECT_EQ(posts, 2);
    add(job, WordStarted{ 3, 1 });
    queue.reset();
    loop.run_posted();
    EXPECT_EQ(listener.heard.size(), 3U) << "a call that comes too late does nothing";
}

TEST_F(EventQueueTest, OfAFileOnlyTheFirstAndTheLatestOfEachKindWaitButAllOfADevice)
{
    add(file_job, StreamStarted());
    for (int i = 0; i < 1000; ++i) {
        add(file_job, WordStarted{ i, 1 });
        if (i % 100 == 0)
            add(file_job, SentenceStarted{ i, 100 });
        if (i % 400 == 0)
            add(file_job, BookmarkReached{ std::to_string(i) });
    }
    loop.run_posted();
    EXPECT_THAT(listener.told(""),
        ElementsAre("StartStream", "Word 0+1", "Sentence 0+100", "Bookmark 0", "Bookmark 400",
            "Bookmark 800", "Sentence 900+100", "Word 999+1"));
    listener.heard.clear();
    for (int i = 1000; i < 1009; ++i)
        add(file_job, WordStarted{ i, 1 });
    add(file_job, StreamEnded());
    loop.run_posted();
    EXPECT_THAT(listener.told(""), ElementsAre("Word 1008+1", "EndStream"));
    for (int i = 0; i < 100; ++i)
        add(job, WordStarted{ i, 1 });
    loop.run_posted();
    EXPECT_EQ(listener.count("Word"), 101);
}

} // namespace
} // namespace tessavox::voice::test
