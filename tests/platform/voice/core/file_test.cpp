// The voice and wave files: speaking into them, and playing them.
#include "tests/platform/files/test_folder.h"
#include "tests/platform/voice/core/voice_bed.h"

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
}

} // namespace
} // namespace tessavox::voice::test
