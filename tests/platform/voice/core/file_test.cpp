// The voice and wave files: speaking into them, and playing them.
#include "tests/platform/voice/core/voice_bed.h"

#include "platform/failure.h"
#include "platform/voice/file_stream.h"
#include "platform/voice/sound/wave_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace tessavox::voice::test {
namespace {

using testing::ElementsAre;

constexpr int mono_22 = 22; // 22.05 kHz, 16 bit, mono

class FileTest : public testing::Test {
protected:
    FileTest() { std::filesystem::create_directories(folder); }
    ~FileTest() override { std::filesystem::remove_all(folder); }

    std::shared_ptr<SpeechFileStream> open_stream(const std::string& name, int type = mono_22)
    {
        auto stream = bed.service->create_file_stream();
        stream->set_FormatType(type);
        stream->Open(path(name), SSFMCreateForWrite, false);
        return stream;
    }
    std::string path(const std::string& name) const { return folder / name; }
    std::vector<std::int16_t> samples(const std::string& name) const
    {
        const auto reader = open_wave_file(path(name));
        std::vector<std::int16_t> all(
            reader->frames() * static_cast<std::size_t>(reader->channels()));
        reader->read(all);
        return all;
    }
    void write_wave(const std::string& name, PcmFormat format, int frames, std::int16_t value)
    {
        const auto writer = create_wave_file(path(name), format);
        std::vector<std::byte> bytes(
            static_cast<std::size_t>(frames) * static_cast<std::size_t>(format.block_align()));
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
            std::memcpy(&bytes[i], &value, 2);
        writer->write(bytes);
        writer->close();
    }

    const std::filesystem::path folder = std::filesystem::temp_directory_path()
        / ("tessavox-file-test-" + std::to_string(getpid()));
    VoiceBed bed;
    SpeechVoice& voice = *bed.voice;
    Listener& listener = bed.listener;
};

TEST_F(FileTest, AFileIsWrittenWithoutADeviceAndItsEventsComeAfterwards)
{
    auto stream = open_stream("a.wav");
    voice.set_AudioOutputStream(stream);
    voice.Speak(u"One two three four. Five.", SVSFlagsAsync);
    ASSERT_TRUE(voice.WaitUntilDone(-1));
    EXPECT_TRUE(listener.heard.empty());
    bed.loop.run_posted();
    EXPECT_THAT(listener.told(""),
        ElementsAre(
            "StartStream", "Sentence 0+19", "Word 0+3", "Sentence 20+5", "Word 20+4", "EndStream"));
    stream->Close();
    const std::vector<std::int16_t> sound = samples("a.wav");
    EXPECT_EQ(sound.size(), 5U * 2250 + 2 * (22050 / 20));
    EXPECT_EQ(listener.heard.back().position, static_cast<std::int64_t>(sound.size() * 2));
    EXPECT_EQ(bed.device->opened(), 0);
}

TEST_F(FileTest, AnotherFormatKeepsTimesAndEvents)
{
    auto stream = open_stream("b.wav", 16 * 0 + 39);
    voice.set_AudioOutputStream(stream);
    voice.Speak(u"One two", SVSFlagsAsync);
    ASSERT_TRUE(voice.WaitUntilDone(-1));
    stream->Close();
    bed.loop.run_posted();
    const std::vector<Heard> words = listener.of("Word");
    ASSERT_EQ(words.size(), 2U);
    EXPECT_EQ(words[1].position, (2250 * 48000 + 11025) / 22050 * 4);
    EXPECT_EQ(
        listener.heard.back().position, static_cast<std::int64_t>(samples("b.wav").size()) * 2);
}

TEST_F(FileTest, AWritingTellsHowFarItHasComeAndCanBeEndedInBetween)
{
    auto stream = open_stream("part.wav");
    voice.set_AudioOutputStream(stream);
    bed.engine->held_at = 2;
    voice.Speak(u"One. Two three. Four. Five.", SVSFlagsAsync);
    ASSERT_TRUE(bed.wait_until([&] { return voice.spoken_units() == 14; }));
    EXPECT_FALSE(voice.WaitUntilDone(0));
    voice.Speak({}, SVSFPurgeBeforeSpeak);
    EXPECT_TRUE(voice.WaitUntilDone(0));
    stream->Close();
    EXPECT_EQ(samples("part.wav").size(), 3U * 2250 + 2 * (22050 / 20));
}

TEST_F(FileTest, AFileIsAsLoudAsTheVolumeAndTheTagsSay)
{
    for (const auto& [volume, loudest] : { std::pair(100, 4000), { 50, 2000 }, { 0, 0 } }) {
        auto stream = open_stream("loud.wav");
        voice.set_AudioOutputStream(stream);
        voice.set_Volume(volume);
        voice.Speak(u"<volume level='50'>One</volume>", SVSFDefault);
        stream->Close();
        const std::vector<std::int16_t> sound = samples("loud.wav");
        EXPECT_NEAR(*std::max_element(sound.begin(), sound.end()), loudest, 20) << volume;
    }
}

TEST_F(FileTest, APauseDoesNotHoldAFile)
{
    auto stream = open_stream("c.wav");
    voice.Pause();
    voice.set_AudioOutputStream(stream);
    voice.Speak(u"One", SVSFlagsAsync);
    EXPECT_TRUE(voice.WaitUntilDone(-1));
    voice.Speak(u"One", SVSFDefault);
    EXPECT_EQ(listener.count("EndStream"), 2);
}

TEST_F(FileTest, LaterReadingsGoIntoTheFileUntilTheOutputIsSet)
{
    auto stream = open_stream("d.wav");
    voice.set_AudioOutputStream(stream);
    stream.reset(); // the command that made it has failed
    voice.Speak(u"One", SVSFlagsAsync);
    ASSERT_TRUE(bed.run_to_end());
    // The format can't be changed and giving the stream back changes nothing.
    EXPECT_THROW(voice.AudioOutputStream()->set_FormatType(4), Failure);
    voice.set_AudioOutputStream(voice.AudioOutputStream());
    voice.Speak(u"Two", SVSFlagsAsync);
    ASSERT_TRUE(bed.run_to_end(2));
    EXPECT_EQ(bed.device->opened(), 0);
    voice.set_AudioOutput(std::nullopt);
    // Nobody closes it: it is complete when the worker has let go of it too.
    EXPECT_TRUE(
        bed.wait_until([&] { return samples("d.wav").size() == 2U * (2250 + 22050 / 20); }));
    voice.Speak(u"Three", SVSFlagsAsync);
    ASSERT_TRUE(bed.run_to_end(3));
    EXPECT_EQ(bed.device->opened(), 1);
}

TEST_F(FileTest, NobodySpeaksIntoAClosedStream)
{
    auto stream = bed.service->create_file_stream();
    EXPECT_THROW(stream->Close(), Failure);
    EXPECT_THROW(voice.set_AudioOutputStream(stream), Failure);
    EXPECT_THROW(voice.set_AudioOutputStream(nullptr), Failure);
    EXPECT_THROW(stream->Open(path("no/such/folder.wav"), SSFMCreateForWrite, false), Failure);
    stream->Open(path("e.wav"), SSFMCreateForWrite, false);
    voice.set_AudioOutputStream(stream);
    stream->Close();
    EXPECT_THROW(voice.Speak(u"One", SVSFlagsAsync), Failure);
}

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

TEST_F(FileTest, ADiskThatRefusesIsReportedByClose)
{
    FileTarget target(std::make_unique<FullDisk>(), PcmFormat());
    EXPECT_TRUE(target.write({}));
    EXPECT_FALSE(target.write({}));
    EXPECT_FALSE(target.write({}));
    EXPECT_THROW(target.close(), Failure);
    EXPECT_NO_THROW(target.close());
}

TEST_F(FileTest, AWaveFileIsPlayedAtItsOwnLevelWhateverTheVolume)
{
    write_wave("f.wav", { 22050, 16, 1 }, 22050, 5000);
    voice.AudioOutputStream()->set_FormatType(mono_22);
    voice.set_AudioOutputStream(voice.AudioOutputStream());
    voice.set_Volume(10);
    voice.set_EventInterests(SVEDefaultInterests | SVEAudioLevel);
    voice.Speak(TextSlice(to_utf16(path("f.wav"))), SVSFlagsAsync | SVSFIsFilename);
    EXPECT_EQ(voice.Skip("Sentence", 1), 0);
    voice.set_Rate(5);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_EQ(bed.device->sound(), std::vector<int>(22050, 5000));
    EXPECT_EQ(listener.heard.back().position, 44100);
    EXPECT_NEAR(listener.count("AudioLevel"), 20, 1);
    EXPECT_EQ(listener.of("AudioLevel")[0].first, 15);
}

TEST_F(FileTest, AWaveFileCanBePlayedIntoAnother)
{
    write_wave("g.wav", { 22050, 16, 1 }, 5000, 700);
    voice.set_Volume(10); // not of a file that is played
    auto stream = open_stream("h.wav");
    voice.set_AudioOutputStream(stream);
    voice.Speak(TextSlice(to_utf16(path("g.wav"))), SVSFIsFilename);
    stream->Close();
    EXPECT_EQ(samples("h.wav"), std::vector<std::int16_t>(5000, 700));
    EXPECT_THAT(listener.told(""), ElementsAre("StartStream", "EndStream"));
}

TEST_F(FileTest, WhatIsNoWaveFileFailsAndLeavesTheQueueAlone)
{
    voice.Speak(u"One", SVSFlagsAsync);
    const auto text = TextSlice(to_utf16(path("missing.wav")));
    EXPECT_THROW(voice.Speak(text, SVSFlagsAsync | SVSFPurgeBeforeSpeak | SVSFIsFilename), Failure);
    ASSERT_TRUE(bed.run_to_end());
    EXPECT_EQ(listener.count("Word"), 1);
}

} // namespace
} // namespace tessavox::voice::test
