// The real voice: text in, sound and events out. The device is the test's, so that it runs as fast
// as the voice can speak; or there is none and a file takes the sound.
#include "tests/platform/voice/core/voice_bed.h"

#include "platform/text.h"
#include "platform/voice/rendering/helper_engines.h"
#include "platform/voice/sound/wave_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <unistd.h>

namespace tessavox::voice::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAreArray;

constexpr int markup = SVSFlagsAsync | SVSFIsXML;
constexpr int mono_22 = 22; // 22.05 kHz, 16 bit, mono: the engine's own
constexpr double rate_22 = 22050;

constexpr const char* english = "espeak:gmw/en"; // "-v gmw/en" of espeak-ng

class RealVoice : public testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::create_directories(folder);
        use_english(bed);
        voice->AudioOutputStream()->set_FormatType(mono_22);
        voice->set_AudioOutputStream(voice->AudioOutputStream());
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    // The order of the voices follows the user's language, the tests' texts are English.
    static void use_english(VoiceBed& in)
    {
        SpeechObjectToken token;
        token.id = english;
        in.voice->set_Voice(token);
    }

    /// Speaks to the device; the sound of this text alone.
    std::vector<int> speak(const std::u16string& text, int flags = markup)
    {
        bed.listener.heard.clear();
        voice->Speak(text, flags);
        EXPECT_TRUE(
            bed.run_until([&] { return bed.listener.count("EndStream") == 1; }, milliseconds(100)));
        const std::vector<int> sound = bed.device->sound();
        const std::int64_t length = bed.listener.heard.back().position / 2;
        EXPECT_GE(static_cast<std::int64_t>(sound.size()), length);
        return { sound.end() - length, sound.end() };
    }
    std::vector<std::string> words_of(const std::u16string& text) const
    {
        std::vector<std::string> words;
        for (const Heard& word : bed.listener.of("Word")) {
            words.push_back(to_utf8(std::u16string_view(text).substr(
                static_cast<std::size_t>(word.first), static_cast<std::size_t>(word.second))));
        }
        return words;
    }
    /// Frames of the file that the text makes.
    std::uint64_t save(const std::u16string& text, int flags = markup)
    {
        return save(bed, text, flags);
    }
    std::uint64_t save(VoiceBed& by, const std::u16string& text, int flags = markup)
    {
        const auto stream = by.service->create_file_stream();
        stream->set_FormatType(mono_22);
        stream->Open(folder / "out.wav", SSFMCreateForWrite, false);
        by.voice->set_AudioOutputStream(stream);
        by.voice->Speak(text, flags);
        EXPECT_TRUE(by.voice->WaitUntilDone(-1));
        by.voice->set_AudioOutput(std::nullopt);
        stream->Close();
        by.listener.heard.clear();
        by.loop.run_posted();
        return open_wave_file(folder / "out.wav")->frames();
    }

    const std::filesystem::path folder = std::filesystem::temp_directory_path()
        / ("tessavox-real-voice-" + std::to_string(getpid()));
    const std::shared_ptr<SpeechEngines> engines
        = start_helper_engines({ TESSAVOX_VOICE_HELPER, 1, {} });
    VoiceBed bed{ engines };
    SpeechVoice* voice = bed.voice.get();
};

TEST_F(RealVoice, EveryWordIsToldAtItsOwnPlaceInTheText)
{
    struct Case {
        std::u16string text;
        std::vector<std::string> words;
    };
    const Case cases[] = {
        { u"It costs 1,250 euros of the 3.5 million.",
            { "It", "costs", "1,250", "euros", "of", "the", "3.5", "million" } },
        { u"Don't use the well-known John's o'clock.",
            { "Don't", "use", "the", "well-known", "John's", "o'clock" } },
        { u"I am in the house of the man.",
            { "I", "am", "in", "the", "house", "of", "the", "man" } },
        { u"Über Größe, naïve \U0001F600 smile.",
            { "Über", "Größe", "naïve", "\U0001F600", "smile" } },
        { u"One 中文 two。", { "One", "中文", "two" } },
        { u"a\tb\r\nc\n\n\nd  \u00A0e", { "a", "b", "c", "d", "e" } },
        { u"<rate speed='5'>Fast</rate> and <volume level='50'/>low <x>go</x>",
            { "Fast", "and", "low", "go" } },
        { u"A &lt; B &amp; C", { "A", "&lt;", "B", "&amp;", "C" } },
        { std::u16string(u"one\0two\1three", 13), { "one", "two", "three" } },
        { u"Lone \xD800 here", { "Lone", "here" } },
        { u"", {} },
        { u" \n\t ", {} },
    };
    for (const Case& c : cases) {
        speak(c.text);
        std::vector<std::string> words = words_of(c.text);
        std::erase(words, "\xEF\xBF\xBD"); // a lone surrogate may be a word or not
        EXPECT_THAT(words, ElementsAreArray(c.words)) << to_utf8(c.text);
    }
}

TEST_F(RealVoice, TheFirstWordComesWithTheFirstSoundAndTheEndWithTheLast)
{
    const std::vector<int> sound = speak(u"Hello there, world.");
    const std::vector<Heard> words = bed.listener.of("Word");
    ASSERT_EQ(words.size(), 3U);
    EXPECT_LT(words[0].position, 2 * 2205);
    EXPECT_EQ(bed.listener.heard.back().position, static_cast<std::int64_t>(sound.size()) * 2);
    EXPECT_GT(bed.listener.count("Phoneme"), 8);
    for (std::size_t i = 1; i < bed.listener.heard.size(); ++i)
        EXPECT_GE(bed.listener.heard[i].position, bed.listener.heard[i - 1].position);
}

double root_mean_square(const std::vector<int>& sound)
{
    double sum = 0;
    for (const int sample : sound)
        sum += static_cast<double>(sample) * sample;
    return std::sqrt(sum / static_cast<double>(std::max<std::size_t>(sound.size(), 1)));
}

// The median of the pitch in all loud stretches, each by normalised autocorrelation.
double pitch_of(const std::vector<int>& sound)
{
    constexpr std::size_t window = 1600;
    constexpr std::size_t shortest = 22050 / 200;
    constexpr std::size_t longest = 22050 / 60;
    const double loud = root_mean_square(sound);
    std::vector<double> pitches;
    for (std::size_t at = 0; at + window + longest < sound.size(); at += window / 4) {
        const auto product = [&](std::size_t a, std::size_t b) {
            double sum = 0;
            for (std::size_t i = 0; i < window; ++i)
                sum += static_cast<double>(sound[a + i]) * sound[b + i];
            return sum;
        };
        const double energy = product(at, at);
        if (energy < loud * loud * window)
            continue;
        std::pair<double, double> best;
        for (std::size_t lag = shortest; lag < longest; ++lag) {
            const double alike
                = product(at, at + lag) / std::sqrt(energy * product(at + lag, at + lag));
            best = std::max(best, { alike, rate_22 / static_cast<double>(lag) });
        }
        pitches.push_back(best.second);
    }
    std::sort(pitches.begin(), pitches.end());
    return pitches.empty() ? 0 : pitches[pitches.size() / 2];
}

TEST_F(RealVoice, MarkupIsHeardInTheSound)
{
    const auto seconds = [&](const std::u16string& text) {
        return static_cast<double>(speak(text).size()) / rate_22;
    };
    EXPECT_NEAR(
        seconds(u"a<silence msec='1500'/>b") - seconds(u"a<silence msec='0'/>b"), 1.5, 0.02);
    // From the first word to the last, so that the pause at the end is left out.
    const auto pace = [&](int rate) {
        speak(to_utf16("<rate absspeed='" + std::to_string(rate)
            + "'>This is how fast it is when the voice of the house is asked to say a sentence "
              "that has no comma and no number in it</rate>"));
        const std::vector<Heard> words = bed.listener.of("Word");
        return static_cast<double>(words.back().position - words.front().position);
    };
    const double plain = pace(0);
    for (const auto& [rate, factor] :
        { std::pair(5, 1.732), { -5, 0.577 }, { 10, 3.0 }, { -10, 0.333 } })
        EXPECT_NEAR(plain / pace(rate), factor, factor * 0.06) << rate;
    const double loud = root_mean_square(speak(u"one two three"));
    const double low = root_mean_square(speak(u"<volume level='50'>one two three</volume>"));
    EXPECT_NEAR(low / loud, 0.5, 0.03);
    const double pitch = pitch_of(speak(u"Are you all well now?"));
    EXPECT_NEAR(pitch_of(speak(u"<pitch absmiddle='10'>Are you all well now?</pitch>")) / pitch,
        4.0 / 3, 0.08);
    EXPECT_NEAR(pitch_of(speak(u"<pitch absmiddle='-10'>Are you all well now?</pitch>")) / pitch,
        3.0 / 4, 0.06);
}

TEST_F(RealVoice, SpeechIsAsLongAsOneCallOfTheEnginesOwnProgramMakesIt)
{
    if (std::system("command -v espeak-ng > /dev/null") != 0)
        GTEST_SKIP() << "The program espeak-ng is not installed";
    std::u16string text;
    for (int i = 0; i < 12; ++i)
        text += u"The quick brown fox jumps over the lazy dog. Is that what you have seen? Yes, "
                u"it was in the garden of the old house, and nobody else saw it. ";
    const double ours = static_cast<double>(save(text, SVSFlagsAsync | SVSFIsNotXML));
    const std::string in = folder / "text.txt";
    const std::string out = folder / "theirs.wav";
    std::ofstream(in) << to_utf8(text);
    ASSERT_EQ(std::system(("espeak-ng -v gmw/en -f " + in + " -w " + out).c_str()), 0);
    const double theirs = static_cast<double>(open_wave_file(out)->frames());
    EXPECT_NEAR(ours / theirs, 1, 0.01);
}

TEST_F(RealVoice, HostileTextsEndLikeAnyOther)
{
    const std::pair<const char*, std::u16string> texts[] = {
        { "only '<'", std::u16string(2'000, u'<') },
        { "a word without end", std::u16string(10'000, u'a') },
        { "lone surrogates", std::u16string(2'000, u'\xDC00') },
        { "NULs", std::u16string(100'000, u'\0') },
        { "an open tag", u"<rate absspeed='3" + std::u16string(1'000, u'x') },
        { "deep nesting",
            [] {
                std::u16string text;
                for (int i = 0; i < 2'000; ++i)
                    text += u"<emph>";
                return text + u"x";
            }() },
        { "brackets of phonemes", u"[[" + std::u16string(2'000, u'a') },
    };
    voice->set_Rate(10);
    for (const auto& [name, text] : texts) {
        save(text);
        EXPECT_EQ(bed.listener.told("EndStream").size(), 1U) << name;
    }
}

TEST_F(RealVoice, ATextWithoutALineEndStartsAndStopsAtOnce)
{
    std::u16string text;
    while (text.size() < 5'000'000)
        text += u"words and more words and still no end of it ";
    voice->Speak(TextSlice(std::move(text)), markup);
    ASSERT_TRUE(bed.run_until([&] { return bed.listener.count("Word") >= 3; }, milliseconds(20)));
    voice->Speak(u"", SVSFPurgeBeforeSpeak);
    EXPECT_TRUE(voice->WaitUntilDone(0));
    speak(u"Next.");
    EXPECT_EQ(words_of(u"Next."), std::vector<std::string>{ "Next" });
}

TEST_F(RealVoice, ALongTextIsTheSameWhetherOneOrSeveralRenderIt)
{
    std::u16string text;
    for (int i = 0; text.size() < 30'000; ++i)
        text += u"Sentence number " + to_utf16(std::to_string(i)) + u" of the long text, in which "
            + u"nothing happens twice. ";
    VoiceBed many{ start_helper_engines({ TESSAVOX_VOICE_HELPER, 3, {} }) };
    use_english(many);
    const auto alone = static_cast<double>(save(text));
    const auto together = static_cast<double>(save(many, text));
    EXPECT_NEAR(together / alone, 1, 0.001);
    EXPECT_EQ(bed.listener.told("Word"), many.listener.told("Word"));
}

} // namespace
} // namespace tessavox::voice::test
