// The real voice: text in, sound and events out. The device is the test's, so that it runs as fast
// as the voice can speak; or there is none and a file takes the sound.
#include "tests/platform/files/test_folder.h"
#include "tests/platform/voice/core/voice_bed.h"

#include "platform/text.h"
#include "platform/voice/rendering/helper_engines.h"
#include "platform/voice/sound/wave_file.h"

#include <gtest/gtest.h>

#include <fstream>

namespace tessavox::voice::test {
namespace {

constexpr int markup = SVSFlagsAsync | SVSFIsXML;

// The order of the voices follows the user's language, the tests' texts are English.
struct EnglishBed : VoiceBed {
    explicit EnglishBed(int helpers)
        : VoiceBed(start_helper_engines({ TESSAVOX_VOICE_HELPER, helpers, {} }))
    {
        SpeechObjectToken token;
        token.id = "espeak:gmw/en"; // "-v gmw/en" of espeak-ng
        voice->set_Voice(token);
    }
};

class RealVoice : public testing::Test {
protected:
    /// Speaks to the device; the sound of this text alone.
    std::vector<std::int16_t> speak(const std::u16string& text)
    {
        bed.listener.heard.clear();
        voice->Speak(text, markup);
        EXPECT_TRUE(bed.has_heard("EndStream", 1, milliseconds(100)));
        const std::vector<std::int16_t> sound = bed.device->sound();
        return { sound.end() - bed.listener.heard.back().position / 2, sound.end() };
    }
    /// Frames of the file that the text makes.
    double save(VoiceBed& by, const std::u16string& text)
    {
        const auto stream = by.service->create_file_stream();
        stream->set_FormatType(mono_22);
        stream->Open(folder / "out.wav", SSFMCreateForWrite, false);
        by.voice->set_AudioOutputStream(stream);
        by.voice->Speak(text, markup);
        EXPECT_TRUE(by.voice->WaitUntilDone(-1));
        by.voice->set_AudioOutput(std::nullopt);
        stream->Close();
        by.listener.heard.clear();
        by.loop.run_posted();
        return static_cast<double>(open_wave_file(folder / "out.wav")->frames());
    }

    const TestFolder folder;
    EnglishBed bed{ 1 };
    SpeechVoice* voice = bed.voice.get();
};

TEST_F(RealVoice, EveryWordIsToldAtItsOwnPlaceInTheText)
{
    for (const std::u16string& marked : {
             std::u16string(u"[It] [costs] [1,250] [euros] [of] [the] [3.5] [million]."),
             std::u16string(u"[Über] [Größe], [naïve] [\U0001F600] [smile]. [One] [中文] [two]。"),
             std::u16string(u"[a]\t[b]\r\n[c]\n\n\n[d]  \u00A0[e]"),
             std::u16string(
                 u"<rate speed='5'>[Fast]</rate> [and] <volume level='50'/>[low] <x>[go]</x>"),
             std::u16string(u"[A] [&lt;] [B] [&amp;] [C] [one]\0[two]\1[three]", 46),
             std::u16string(u" \n\t "),
         }) {
        std::u16string text = marked;
        std::erase_if(text, [](char16_t unit) { return unit == u'[' || unit == u']'; });
        const std::vector<std::int16_t> sound = speak(text);
        std::u16string told = text;
        std::int64_t position = static_cast<std::int64_t>(sound.size()) * 2;
        std::vector<Heard> words = bed.listener.of("Word");
        for (auto word = words.rbegin(); word != words.rend(); ++word) {
            told.insert(static_cast<std::size_t>(word->first + word->second), u"]");
            told.insert(static_cast<std::size_t>(word->first), u"[");
            EXPECT_LT(word->position, position);
            position = word->position;
        }
        EXPECT_EQ(to_utf8(told), to_utf8(marked));
        EXPECT_TRUE(words.empty() || position < 2 * 2205) << "the first sounds at once";
        EXPECT_GE(bed.listener.count("Phoneme"), static_cast<int>(words.size()));
    }
}

TEST_F(RealVoice, SpeechIsAsLongAsOneCallOfTheEnginesOwnProgramMakesIt)
{
    if (std::system("command -v espeak-ng > /dev/null") != 0)
        GTEST_SKIP() << "The program espeak-ng is not installed";
    std::u16string text;
    for (int i = 0; i < 12; ++i)
        text += u"The quick brown fox jumps over the lazy dog. Is that what you have seen? Yes, "
                u"it was in the garden of the old house, and nobody else saw it. ";
    const std::string in = folder / "text.txt";
    const std::string out = folder / "theirs.wav";
    std::ofstream(in) << to_utf8(text);
    ASSERT_EQ(std::system(("espeak-ng -v gmw/en -f " + in + " -w " + out).c_str()), 0);
    const auto theirs = static_cast<double>(open_wave_file(out)->frames());
    EXPECT_NEAR(save(bed, text) / theirs, 1, 0.01);
}

TEST_F(RealVoice, ATextWithoutALineEndStartsAndStopsAtOnce)
{
    std::u16string text;
    while (text.size() < 5'000'000)
        text += u"words and more words and still no end of it ";
    voice->Speak(TextSlice(std::move(text)), markup);
    ASSERT_TRUE(bed.has_heard("Word", 3, milliseconds(20)));
    voice->Speak(u"", SVSFPurgeBeforeSpeak);
    EXPECT_TRUE(voice->WaitUntilDone(0));
    speak(u"Next.");
    EXPECT_EQ(bed.listener.told("Word"), std::vector<std::string>{ "Word 0+4" });
}

} // namespace
} // namespace tessavox::voice::test
