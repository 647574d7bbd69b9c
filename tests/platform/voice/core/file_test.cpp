// The voice and wave files: speaking into them, and playing them.
#include "tests/platform/files/test_folder.h"
#include "tests/platform/voice/core/voice_bed.h"

#include "platform/failure.h"
#include "platform/voice/file_stream.h"
#include "platform/voice/sound/wave_file.h"

#include <gmock/gmock.h>

namespace tessavox::voice::test {
namespace {

using testing::ElementsAre;

constexpr std::size_t pause = ToneEngine::pause_samples;

class FileTest : public testing::Test {
protected:
    /// A stream into "out.wav", which the voice speaks into.
    std::shared_ptr<SpeechFileStream> take_stream(int type = mono_22)
    {
        auto stream = bed.service->create_file_stream();
        stream->set_FormatType(type);
        stream->Open(path("out.wav"), SSFMCreateForWrite, false);
        voice.set_AudioOutputStream(stream);
        return stream;
    }
    std::string path(const std::string& name) const { return folder / name; }
    std::vector<std::int16_t> samples() const
    {
        const auto reader = open_wave_file(path("out.wav"));
        std::vector<std::int16_t> all(
            reader->frames() * static_cast<std::size_t>(reader->channels()));
        reader->read(all);
        return all;
    }
    /// A wave file of that many frames, all alike. Its path, to be spoken.
    TextSlice wave_of(std::vector<std::int16_t> frames) const
    {
        const auto writer = create_wave_file(path("wave.wav"), { 22050, 16, 1 });
        writer->write(std::as_bytes(std::span(frames)));
        writer->close();
        return TextSlice(to_utf16(path("wave.wav")));
    }

    const TestFolder folder;
    VoiceBed bed;
    SpeechVoice& voice = *bed.voice;
    Listener& listener = bed.listener;
};

// Nobody sees them all: of words and sentences the first and the latest wait until they are
// fetched.
TEST_F(FileTest, AFileIsWrittenWithoutADeviceAndItsEventsComeAfterwards)
{
    auto stream = take_stream();
    voice.Speak(u"One two three four. Five.", SVSFlagsAsync);
    ASSERT_TRUE(voice.WaitUntilDone(-1));
    EXPECT_TRUE(listener.heard.empty());
    bed.loop.run_posted();
    EXPECT_THAT(listener.told(""),
        ElementsAre(
            "StartStream", "Sentence 0+19", "Word 0+3", "Sentence 20+5", "Word 20+4", "EndStream"));
    stream->Close();
    EXPECT_EQ(samples().size(), 5U * 2250 + 2 * pause);
    EXPECT_EQ(listener.heard.back().position, static_cast<std::int64_t>(samples().size() * 2));
    EXPECT_EQ(bed.device->opened(), 0);

    listener.heard.clear();
    stream = take_stream(39); // 48 kHz, 16 bit, stereo: the times stay
    voice.Speak(u"One two", SVSFDefault);
    stream->Close();
    EXPECT_EQ(listener.of("Word").back().position, (2250 * 48000 + 11025) / 22050 * 4);
    EXPECT_EQ(listener.heard.back().position, static_cast<std::int64_t>(samples().size() * 2));
}

TEST_F(FileTest, EventsThatAreFetchedMeanwhileGoOnWithTheLatestAndEveryBookmark)
{
    auto stream = take_stream();
    bed.engine->held_at = 1;
    const std::u16string text = u"One two. Three <bookmark mark='a'/>four five. "
                                u"Six. Seven <bookmark mark='b'/>eight <bookmark mark='c'/>nine.";
    voice.Speak(text, SVSFlagsAsync | SVSFIsXML);
    ASSERT_TRUE(bed.has_heard("Word", 2));
    listener.heard.clear();
    bed.engine->held_at = -1;
    ASSERT_TRUE(voice.WaitUntilDone(-1));
    bed.loop.run_posted();
    EXPECT_THAT(listener.told(""),
        ElementsAre(
            "Bookmark a", "Sentence 51+57", "Bookmark b", "Bookmark c", "Word 103+4", "EndStream"));
}

TEST_F(FileTest, OnlyWhatIsOfInterestIsTold)
{
    const std::pair<int, const char*> rows[] = { { SVEStartInputStream, "StartStream" },
        { SVEEndInputStream, "EndStream" }, { SVEVoiceChange, "VoiceChange" },
        { SVEBookmark, "Bookmark" }, { SVEWordBoundary, "Word" },
        { SVESentenceBoundary, "Sentence" }, { SVEPhoneme, "Phoneme" }, { SVEViseme, "Viseme" } };
    auto stream = take_stream();
    for (const auto& [interest, kind] : rows) {
        listener.heard.clear();
        voice.set_EventInterests(interest);
        voice.Speak(
            u"One <bookmark mark='a'/>two <voice required='Name=Bert'>three</voice>", SVSFIsXML);
        EXPECT_FALSE(listener.heard.empty()) << kind;
        EXPECT_EQ(listener.count(kind), std::ssize(listener.heard)) << kind;
    }
}

TEST_F(FileTest, AWritingTellsHowFarItHasComeAndCanBeEndedInBetween)
{
    auto stream = take_stream();
    bed.engine->held_at = 2;
    voice.Speak(u"One. Two three. Four. Five.", SVSFlagsAsync);
    ASSERT_TRUE(bed.wait_until([&] { return voice.spoken_units() == 14; }));
    EXPECT_FALSE(voice.WaitUntilDone(0));
    voice.Speak({}, SVSFPurgeBeforeSpeak);
    EXPECT_TRUE(voice.WaitUntilDone(0));
    stream->Close();
    EXPECT_EQ(samples().size(), 3U * 2250 + 2 * pause);
}

TEST_F(FileTest, AFileIsAsLoudAsTheVolumeAndTheTagsSay)
{
    for (const auto& [volume, loudest] : { std::pair(100, 4000), { 50, 2000 }, { 0, 0 } }) {
        auto stream = take_stream();
        voice.set_Volume(volume);
        voice.Speak(u"<volume level='50'>One</volume>", SVSFDefault);
        stream->Close();
        EXPECT_NEAR(std::ranges::max(samples()), loudest, 20) << volume;
    }
}

TEST_F(FileTest, LaterReadingsGoIntoTheFileUntilTheOutputIsSet)
{
    voice.Pause(); // which holds no file
    auto stream = take_stream();
    stream.reset(); // the command that made it has failed
    voice.Speak(u"One", SVSFlagsAsync);
    EXPECT_TRUE(voice.WaitUntilDone(-1));
    // The format can't be changed and giving the stream back changes nothing.
    EXPECT_THROW(voice.AudioOutputStream()->set_FormatType(4), Failure);
    voice.set_AudioOutputStream(voice.AudioOutputStream());
    voice.Speak(u"Two", SVSFDefault);
    EXPECT_EQ(listener.count("EndStream"), 2);
    EXPECT_EQ(bed.device->opened(), 0);
    voice.Resume();
    voice.set_AudioOutput(std::nullopt);
    // Nobody closes it: it is complete when the worker has let go of it too.
    EXPECT_TRUE(bed.wait_until([&] { return samples().size() == 2 * (2250 + pause); }));
    ASSERT_TRUE(bed.speak(u"Three"));
    EXPECT_EQ(bed.device->opened(), 1);
}

TEST_F(FileTest, WhatIsNoOpenFileIsRefusedAndTheQueueLeftAlone)
{
    voice.Speak(u"One", SVSFlagsAsync);
    const auto missing = TextSlice(to_utf16(path("missing.wav")));
    EXPECT_THROW(
        voice.Speak(missing, SVSFlagsAsync | SVSFPurgeBeforeSpeak | SVSFIsFilename), Failure);
    ASSERT_TRUE(bed.has_heard("EndStream"));
    EXPECT_EQ(listener.count("Word"), 1);
    auto stream = bed.service->create_file_stream();
    EXPECT_THROW(stream->Close(), Failure);
    EXPECT_THROW(voice.set_AudioOutputStream(stream), Failure);
    EXPECT_THROW(voice.set_AudioOutputStream(nullptr), Failure);
    EXPECT_THROW(stream->Open(path("no/such/folder.wav"), SSFMCreateForWrite, false), Failure);
    take_stream()->Close();
    EXPECT_THROW(voice.Speak(u"One", SVSFlagsAsync), Failure);
}

TEST_F(FileTest, ADiskThatRefusesIsReportedByClose)
{
    class FullDisk : public WaveWriter {
    public:
        void write(std::span<const std::byte>) override
        {
            if (--m_writes_left < 0)
                throw Failure("The disk is full");
        }
        void close() override { }
        std::uint64_t frames() const override { return 0; }

    private:
        int m_writes_left = 1;
    };
    FileTarget target(std::make_unique<FullDisk>(), PcmFormat());
    EXPECT_TRUE(target.write({}));
    EXPECT_FALSE(target.write({}));
    EXPECT_FALSE(target.write({}));
    EXPECT_THROW(target.close(), Failure);
    EXPECT_NO_THROW(target.close());
}

TEST_F(FileTest, AWaveFileIsPlayedAtItsOwnLevelWhateverTheVolume)
{
    const std::vector<std::int16_t> wave(22050, 5000);
    voice.set_Volume(10);
    voice.set_EventInterests(SVEDefaultInterests | SVEAudioLevel);
    voice.Speak(wave_of(wave), SVSFlagsAsync | SVSFIsFilename);
    EXPECT_EQ(voice.Skip("Sentence", 1), 0);
    voice.set_Rate(5);
    ASSERT_TRUE(bed.has_heard("EndStream"));
    EXPECT_EQ(bed.device->sound(), wave);
    EXPECT_EQ(listener.heard.back().position, 44100);
    EXPECT_NEAR(listener.count("AudioLevel"), 20, 1);
    EXPECT_EQ(listener.of("AudioLevel")[0].first, 15);

    listener.heard.clear();
    auto stream = take_stream();
    voice.Speak(wave_of(wave), SVSFIsFilename);
    stream->Close();
    EXPECT_EQ(samples(), wave) << "played into another file";
    EXPECT_THAT(
        listener.told("StartStream Word EndStream"), ElementsAre("StartStream", "EndStream"));
}

} // namespace
} // namespace tessavox::voice::test
