// The real voice: text in, sound and events out. The device is the test's, so that it runs as fast
// as the voice can speak.
#include "tests/platform/voice/core/voice_bed.h"

#include "platform/text.h"
#include "platform/voice/rendering/helper_engines.h"

#include <gtest/gtest.h>

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

struct RealVoice : testing::Test {
    /// Speaks to the device; the sound of this text alone.
    std::vector<std::int16_t> speak(const std::u16string& text)
    {
        bed.listener.heard.clear();
        voice->Speak(text, markup);
        EXPECT_TRUE(bed.has_heard("EndStream", 1, milliseconds(100)));
        const std::vector<std::int16_t> sound = bed.device->sound();
        return { sound.end() - bed.listener.heard.back().position / 2, sound.end() };
    }

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
